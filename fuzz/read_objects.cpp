#include <algorithm>
#include <array>

#include "Fuzz.h"
#include "QuillonMaps.h"
#include "core/TestObjects.h"

namespace {

/// A kind of value: reads one and writes it again.
using TRewrite = void (*)(TQuillonReader& AReader, TQuillonWriter& AWriter);

template <auto Read, auto Write>
void Rewrite(TQuillonReader& AReader, TQuillonWriter& AWriter) {
  (AWriter.*Write)((AReader.*Read)());
}

using R = TQuillonReader;
using W = TQuillonWriter;
constexpr std::array<TRewrite, 12> Kinds = {
    Rewrite<&R::ReadBoolean, &W::WriteBoolean>,
    Rewrite<&R::ReadShortInt, &W::WriteShortInt>,
    Rewrite<&R::ReadWord, &W::WriteWord>,
    Rewrite<&R::ReadLongInt, &W::WriteLongInt>,
    Rewrite<&R::ReadInt64, &W::WriteInt64>,
    Rewrite<&R::ReadExtended, &W::WriteExtended>,
    Rewrite<&R::ReadGuid, &W::WriteGuid>,
    Rewrite<&R::ReadString, &W::WriteString>,
    Rewrite<&R::ReadUtf8String, &W::WriteUtf8String>,
    Rewrite<&R::ReadAnsiString, &W::WriteAnsiString>,
    [](R& AReader, W& AWriter) { AWriter.WriteStrings(AReader.ReadStrings()); },
    [](R& AReader, W& AWriter) {
      TQuillonMemoryStream Block;
      AReader.ReadBinary(Block);
      AWriter.WriteBinary(Block);
    },
};

/// The values of a stream, each behind its kind, written again as far as they can be read.
std::string RewriteValues(std::string_view AnInput, std::size_t ABufferSize) {
  TQuillonMemoryStream Source{std::string(AnInput)};
  TQuillonMemoryStream Target;
  TQuillonStreamReader Reader(Source, ABufferSize);
  TQuillonStreamWriter Writer(Target, ABufferSize);
  Fuzz::Accepts([&] {
    while (Reader.CanRead()) {
      TQuillonMemoryStream Value;
      TQuillonStreamWriter ValueWriter(Value);
      const std::uint8_t Kind = Reader.ReadByte();
      ValueWriter.WriteByte(Kind);
      Kinds[Kind % Kinds.size()](Reader, ValueWriter);
      Writer.WriteSignature(Value.Content());
    }
  });
  Writer.FlushBuffer();
  return Target.TakeContent();
}

std::shared_ptr<TQuillonPersistent> ReadGraph(std::string_view AnInput) {
  TQuillonMemoryStream Stream{std::string(AnInput)};
  TQuillonStreamReader Reader(Stream);
  std::shared_ptr<TQuillonPersistent> Root;
  Fuzz::Accepts([&] { Root = TQuillonObjectReader(Reader).ReadObject(); });
  return Root;
}

std::int64_t SizeOf(const TQuillonPersistent& AnObject) {
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter(Stream).WriteObject(&AnObject);
  return Stream.Size();
}

}  // namespace

/// Reads the input as values, each behind a byte for its kind, and as a graph of objects. Values that were read and
/// written are read again as the same ones, with any buffer; a clone of a graph equals it. The chains of a map follow
/// the addresses of keys that have no hash of their own, so that with maps only the size is the same.
void Fuzz::Run(std::string_view AnInput) {
  const std::string Values = RewriteValues(AnInput, 0);
  Fuzz::Require(RewriteValues(AnInput, 5) == Values, "a buffer changes the values");
  Fuzz::Require(RewriteValues(Values, 0) == Values, "values change when they are written and read");

  const std::array<const TQuillonPersistentClass*, 3> WithMaps = {&TQuillonHashMap::Class(), &TQuillonHashSet::Class(),
                                                                  &TQuillonPropertyList::Class()};
  auto& Registry = TQuillonClassRegistry::Instance();
  Registry.AddClass(TestNode::Class());
  QuillonClasses::RegisterClasses();
  std::shared_ptr<TQuillonPersistent> Clone;
  if (const auto Root = ReadGraph(AnInput); Root != nullptr && Accepts([&] { Clone = Root->Clone(); })) {
    Fuzz::Require(SizeOf(*Clone) == SizeOf(*Root), "a clone has another size");
  }
  std::ranges::for_each(WithMaps, [&](const auto* AClass) { Registry.RemoveClass(*AClass); });
  if (const auto Root = ReadGraph(AnInput)) {
    Fuzz::Require(Accepts([&] { Clone = Root->Clone(); }) && Clone->HasSameContent(*Root), "a clone is another graph");
  }
}
