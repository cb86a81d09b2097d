#include <gmock/gmock.h>

#include <array>

#include "QuillonRemoteWorkspaces/UserWorkspace.h"

namespace {

using TProfile = TQuillonRemoteUserWorkspace;
using TDocument = TQuillonRemoteUserWorkspaceDocument;
using TFolder = TQuillonRemoteUserWorkspaceFolder;
using TPermission = TQuillonRemoteUserWorkspacePermission;

TGUID Guid(std::uint8_t ANumber) {
  TGUID Value;
  Value.Bytes[8] = ANumber;
  return Value;
}

std::shared_ptr<TPermission> Permission(std::string AName, std::int8_t AValue) {
  auto Made = std::make_shared<TPermission>();
  Made->FPolicyName = std::move(AName);
  Made->FPolicyValue = AValue;
  return Made;
}

template <class TFile>
std::shared_ptr<TFile> File(std::uint8_t AnID, std::int8_t AValue) {
  auto Made = std::make_shared<TFile>();
  Made->FID = Guid(AnID);
  Made->FPermissions.FItems.push_back(Permission("Velmora.Login", AValue));
  return Made;
}

std::string Written(const TQuillonPersistent& AnObject) {
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter(Stream).WriteObjectProperties(&AnObject);
  return Stream.TakeContent();
}

void Read(TProfile& AProfile, std::string ABytes) {
  QuillonRemoteWorkspaces::RegisterUserWorkspaceClasses();
  TQuillonMemoryStream Stream(std::move(ABytes));
  AProfile.LoadFromStream(Stream);
}

/// A root with the folder 2, in it the folder 3 with the document 4; the document 5 beside the first folder, and the
/// document 4 once more.
void Fill(TProfile& AProfile) {
  AProfile.FUserName = "anna";
  AProfile.FFileSpace.FID = Guid(1);
  AProfile.FFileSpace.FPermissions.FItems = {Permission("a", 1), Permission("A", 2), Permission("a", 3)};
  const auto Outer = File<TFolder>(2, 20);
  const auto Inner = File<TFolder>(3, -128);
  Inner->FName = "Pläne";
  Inner->FTenant = "Nord";
  Inner->FDocuments.FItems = {File<TDocument>(4, 40)};
  Outer->FFolders.FItems = {Inner};
  AProfile.FFileSpace.FFolders.FItems = {Outer};
  AProfile.FFileSpace.FDocuments.FItems = {File<TDocument>(4, 41), File<TDocument>(5, 50)};
  AProfile.FCanChangePassword = true;
}

TEST(UserWorkspaceTest, GivesTheValueOfAPolicyOnAFile) {
  struct TCase {
    std::uint8_t ID;
    const char* Policy;
    int Value;
  };
  constexpr std::array<TCase, 10> Cases = {{{1, "a", 1},
                                            {1, "A", 2},
                                            {1, "Velmora.Login", -1},
                                            {2, "Velmora.Login", 20},
                                            {3, "Velmora.Login", -128},
                                            {3, "velmora.login", -1},
                                            {4, "Velmora.Login", 40},
                                            {5, "Velmora.Login", 50},
                                            {0, "Velmora.Login", -1},
                                            {6, "Velmora.Login", -1}}};
  TProfile Profile;
  EXPECT_FALSE(Profile.Available());
  Fill(Profile);
  EXPECT_TRUE(Profile.Available());
  for (const TCase& Case : Cases) {
    EXPECT_EQ(Profile.GetPolicyValue(Guid(Case.ID), Case.Policy), Case.Value) << int{Case.ID} << Case.Policy;
  }
  EXPECT_EQ(Profile.FindFile(Guid(1)), &Profile.FFileSpace);

  Profile.FAdmin = true;
  EXPECT_TRUE(Profile.IsAdmin() && !Profile.IsSubAdmin());
  EXPECT_EQ(Profile.GetPolicyValue(Guid(6), "?"), 127);
  Profile.FTenant = "Nord";
  EXPECT_TRUE(!Profile.IsAdmin() && Profile.IsSubAdmin());
  EXPECT_EQ(Profile.GetPolicyValue(Guid(3), "Velmora.Login"), 127);
  Profile.Clear();
  EXPECT_FALSE(Profile.Available() || Profile.IsSubAdmin() || Profile.FCanChangePassword);
  EXPECT_EQ(Profile.FindFile(Guid(4)), nullptr);
}

TEST(UserWorkspaceTest, HasItsFieldsInTheirOrderOnTheWire) {
  TProfile Profile;
  Profile.FUserName = "a";
  Profile.FSite = "b";
  Profile.FFileSpace.FID = Guid(7);
  Profile.FFileSpace.FPermissions.FItems = {Permission("p", -2)};
  Profile.FAdmin = true;
  Profile.FTenant = "t";
  const auto Text = [](std::string_view AText) {
    std::string Bytes{static_cast<char>(AText.size()), 0, 0, 0};
    for (const char Letter : AText) {
      Bytes.append({Letter, 0});
    }
    return Bytes;
  };
  const auto Number = [](char ANumber) { return std::string{ANumber, 0, 0, 0}; };
  EXPECT_EQ(Written(Profile), Text("a") + Text("") + Text("") + Text("") + Text("") + Text("b") + std::string(8, '\0') +
                                  '\x07' + std::string(7, '\0') + Number(1) + Number(1) +
                                  Text("TQuillonRemoteUserWorkspacePermission") + Text("p") + "\xFE\xFF\xFF\xFF" +
                                  Number(0) + Number(0) + '\x01' + Text("t") + std::string(1, '\0'));
}

TEST(UserWorkspaceTest, IsReadWholeOrNotAtAll) {
  TProfile Source;
  Fill(Source);
  const std::string Bytes = Written(Source);
  TProfile Target;
  Read(Target, Bytes);
  EXPECT_TRUE(Target.HasSameContent(Source));
  EXPECT_EQ(dynamic_cast<const TFolder&>(*Target.FindFile(Guid(3))).FName, "Pläne");

  Target.FLastname = "as it was";
  const std::string Before = Written(Target);
  for (std::size_t Length = 0; Length < Bytes.size(); ++Length) {
    EXPECT_THROW(Read(Target, Bytes.substr(0, Length)), EQuillonReaderError) << Length;
  }
  EXPECT_EQ(Written(Target), Before);
}

/// A profile whose root has the permissions that the writer calls write.
template <class TWrite>
std::string WithPermissions(const TWrite& AWrite) {
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter Plain(Stream);
  TQuillonObjectWriter Writer(Plain);
  for (int I = 0; I < 6; ++I) {
    Writer.WriteString("");
  }
  Writer.WriteGuid(Guid(1));
  AWrite(Writer);
  Writer.WriteLongInt(0);
  Writer.WriteLongInt(0);
  Writer.WriteBoolean(false);
  Writer.WriteString("");
  Writer.WriteBoolean(false);
  return Stream.TakeContent();
}

TEST(UserWorkspaceTest, RefusesWhatNoServerSends) {
  const TPermission Right;
  const TDocument Other;
  const auto List = [](std::int32_t ACount, std::initializer_list<const TQuillonPersistent*> AnItems) {
    return WithPermissions([&](TQuillonObjectWriter& AWriter) {
      AWriter.WriteLongInt(ACount);
      for (const TQuillonPersistent* Item : AnItems) {
        AWriter.WriteObject(Item);
      }
    });
  };
  const auto Value = [](std::int32_t AValue) {
    return WithPermissions([&](TQuillonObjectWriter& AWriter) {
      AWriter.WriteLongInt(1);
      AWriter.WriteLongInt(1);
      AWriter.WriteString(TPermission::ClassName);
      AWriter.WriteString("p");
      AWriter.WriteLongInt(AValue);
    });
  };
  TProfile Profile;
  for (const std::string& Fine : {List(1, {&Right}), Value(127), Value(-128)}) {
    EXPECT_NO_THROW(Read(Profile, Fine));
  }
  for (const std::string& Bad : {List(-1, {}), List(1, {nullptr}), List(1, {&Other}), List(2, {&Right, &Right}),
                                 List(0x7FFFFFFF, {&Right}), Value(128), Value(-129)}) {
    EXPECT_THROW(Read(Profile, Bad), EQuillonReaderError);
  }
  const auto Nested = [](int ALevels) {
    auto Folder = File<TFolder>(1, 1);
    while (--ALevels > 0) {
      auto Outer = File<TFolder>(1, 1);
      Outer->FFolders.FItems = {std::move(Folder)};
      Folder = std::move(Outer);
    }
    TProfile Deep;
    Deep.FFileSpace.FFolders.FItems = {Folder};
    return Written(Deep);
  };
  EXPECT_NO_THROW(Read(Profile, Nested(200)));
  EXPECT_THROW(Nested(300), EQuillonPersistentError);
}

}  // namespace
