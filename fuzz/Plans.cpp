#include "Plans.h"

#include <pugixml.hpp>
#include <vector>

namespace {

bool IsStamp(std::string_view AName) { return AName.starts_with("Changed") || AName.starts_with("Created"); }

std::string ContentOf(const pugi::xml_node& ANode, bool AHasStamps) {
  std::vector<std::string> Parts;
  for (const pugi::xml_node& Child : ANode.children()) {
    if (AHasStamps || !IsStamp(Child.name())) {
      Parts.push_back(ContentOf(Child, AHasStamps));
    }
  }
  if (ANode.name() == std::string_view("Items")) {
    std::ranges::sort(Parts);
  }
  std::string Text = std::string("\n") + ANode.name() + ANode.value();
  for (const pugi::xml_attribute& Attribute : ANode.attributes()) {
    Text.append(" ").append(Attribute.value());
  }
  for (const std::string& Part : Parts) {
    Text += Part;
  }
  return Text;
}

}  // namespace

std::string Fuzz::Content(const std::string& ADocument, bool AHasStamps) {
  pugi::xml_document Document;
  Require(Document.load_string(ADocument.c_str()), "a saved document is no XML");
  return ContentOf(Document, AHasStamps);
}

void Fuzz::RequireRest(const std::string& ADocument) {
  const std::string Second = SavedAgain(ADocument);
  if (Second != ADocument) {
    RequireSame(Content(ADocument, false), Content(Second, false), "a plan that was saved is loaded otherwise");
  }
  const std::string Third = SavedAgain(Second);
  if (Third != Second) {
    RequireSame(Content(Second), Content(Third), "a plan that was saved twice is loaded otherwise");
  }
}
