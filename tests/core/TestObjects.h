#pragma once

#include "QuillonStreams/Objects.h"

/// A place, as a part of something else.
class TestPlace final : public TQuillonPersistent {
 public:
  const TQuillonPersistentClass& PersistentClass() const override {
    static const TQuillonPersistentClass Class{
        "TPlace", nullptr, {QuillonStreams::Published<&TestPlace::X>(), QuillonStreams::Published<&TestPlace::Y>()}};
    return Class;
  }

  std::int16_t X = 0;
  double Y = 0;
};

/// A knot of a graph.
class TestNode final : public TQuillonPersistent {
 public:
  static const TQuillonPersistentClass& Class() {
    using QuillonStreams::Published;
    static const TQuillonPersistentClass Class{
        "TNode",
        QuillonStreams::Make<TestNode>,
        {Published<&TestNode::Name>(), Published<&TestNode::Place>(), Published<&TestNode::Left>(),
         Published<&TestNode::Right>(), Published<&TestNode::Up>()}};
    return Class;
  }
  const TQuillonPersistentClass& PersistentClass() const override { return Class(); }

  std::string Name;
  TestPlace Place;
  std::shared_ptr<TestNode> Left;
  std::shared_ptr<TestNode> Right;
  std::weak_ptr<TestNode> Up;
};
