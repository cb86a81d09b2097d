#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "Fuzz.h"
#include "QuillonBase64.h"
#include "QuillonDataObjects/XMLValues.h"
#include "QuillonDateTime.h"
#include "QuillonGuid.h"
#include "QuillonNumbers.h"

namespace {

/// A form of values as text: a value is read and written.
struct TForm {
  const char* Name;
  std::string (*Rewrite)(std::string_view AText);
};

template <auto Parse, auto Append>
std::string Rewrite(std::string_view AText) {
  std::string Text;
  Append(Text, Parse(AText));
  return Text;
}

std::int64_t ParseInteger(std::string_view AText) {
  using TLimits = std::numeric_limits<std::int64_t>;
  return QuillonNumbers::ParseInteger(AText, TLimits::min(), TLimits::max());
}

template <TQuillonTimeSpanFormat Format>
std::string RewriteSpan(std::string_view AText) {
  TQuillonTimeSpan Span;
  if (!TQuillonTimeSpan::FromString(AText, Span)) {
    throw EQuillonConvertError("no span");
  }
  return Span.ToString(Format);
}

constexpr std::array Forms = {
    TForm{"integer", Rewrite<ParseInteger, QuillonNumbers::AppendInteger<std::int64_t>>},
    TForm{"float", Rewrite<QuillonNumbers::ParseFloat, QuillonNumbers::AppendFloat>},
    TForm{"timepoint", Rewrite<QuillonDateTime::ParseDateTime, QuillonDateTime::AppendDateTime>},
    TForm{"timepoint with offset", Rewrite<QuillonDateTime::ParseDateTime, QuillonDateTime::AppendDateTimeWithOffset>},
    TForm{"date", Rewrite<QuillonDateTime::ParseDate, QuillonDateTime::AppendDate>},
    TForm{"time", Rewrite<QuillonDateTime::ParseTime, QuillonDateTime::AppendTime>},
    TForm{"short timepoint", [](std::string_view AText) { return TQuillonDateTime::Create(AText).ToString(); }},
    TForm{"short date", [](std::string_view AText) { return TQuillonDate::Create(AText).ToString(); }},
    TForm{"span", RewriteSpan<tsfMinSecMSec>},
    TForm{"span of seconds", RewriteSpan<tsfMinSec>},
    TForm{"guid", Rewrite<QuillonGuid::Parse, QuillonGuid::AppendBraced>},
    TForm{"base64", [](std::string_view AText) { return QuillonBase64::Encode(QuillonBase64::Decode(AText)); }},
    TForm{"strings",
          [](std::string_view AText) { return QuillonXMLValues::JoinStrings(QuillonXMLValues::SplitStrings(AText)); }},
};

void RequireRest(const TForm& AForm, std::string_view AText) {
  std::string Text;
  if (Fuzz::Accepts([&] { Text = AForm.Rewrite(AText); })) {
    const std::string Again = AForm.Rewrite(Text);
    Fuzz::Require(Again == Text, std::string(AForm.Name) + ": \"" + Text + "\" becomes \"" + Again + "\"");
  }
}

/// Any number has a text that is read as about the same one.
void RequireText(double AValue) {
  constexpr double Precision = 1e-14;
  std::string Text;
  QuillonNumbers::AppendFloat(Text, AValue);
  const double Read = QuillonNumbers::ParseFloat(Text);
  Fuzz::Require(std::abs(Read - AValue) <= std::abs(AValue) * Precision, "the number " + Text + " is read otherwise");
  std::string Timepoint;
  QuillonDateTime::AppendDateTime(Timepoint, AValue);
  Fuzz::Require(QuillonDateTime::Decode(QuillonDateTime::ParseDateTime(Timepoint)) == QuillonDateTime::Decode(AValue),
                "the timepoint " + Timepoint + " is read otherwise");
}

}  // namespace

/// Reads the text as a value of each form: the text of what is accepted is accepted again and stays as it is.
void Fuzz::Run(std::string_view AnInput) {
  for (const TForm& Form : Forms) {
    RequireRest(Form, AnInput);
  }
  double Value = 0;
  std::memcpy(&Value, AnInput.data(), std::min(AnInput.size(), sizeof Value));
  if (std::isfinite(Value)) {
    RequireText(Value);
  }
}
