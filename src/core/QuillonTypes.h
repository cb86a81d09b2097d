#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

/// Base of all errors of the library; the text is for people.
class EQuillonException : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A failed call of the operating system.
/// The message is "Systemfehler (Fehlercode: <code>).\r\n<system's text>".
class EQuillonWin32Error : public EQuillonException {
 public:
  /// @param AnErrorCode the system's own code (errno on POSIX systems)
  /// @param ASubject what the call was about, usually a path; stands behind the system's text
  explicit EQuillonWin32Error(int AnErrorCode, std::string_view ASubject = {});

  int ErrorCode() const { return FErrorCode; }
  const std::string& ErrorMsg() const { return FErrorMsg; }

 protected:
  struct TText {
    std::string Text;
  };
  /// An error that has a text of its own in place of the system's.
  EQuillonWin32Error(int AnErrorCode, TText AText);

 private:
  int FErrorCode;
  std::string FErrorMsg;
};

/// Text that should be a number, a date or an identifier and is none.
class EQuillonConvertError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// An assignment between objects of unrelated classes.
class EQuillonAssignError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// An index outside of a list, or another misuse of a collection.
class EQuillonCollectionError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// Root of the library's class tree: assignment and comparison.
class TQuillonObject {
 public:
  TQuillonObject() = default;
  TQuillonObject(const TQuillonObject&) = delete;
  TQuillonObject& operator=(const TQuillonObject&) = delete;
  virtual ~TQuillonObject() = default;

  /// Takes over the content of another object.
  /// @throws EQuillonAssignError unless a class overrides it
  virtual void Assign(const TQuillonObject& AnObject);

  /// Negative, zero or positive, as this object stands before, with or behind the other; 0 by default.
  virtual int Compare(const TQuillonObject& AnObject) const;

  /// Whether the two are the same to a collection: by default only an object and itself.
  virtual bool Equals(const TQuillonObject& AnObject) const { return this == &AnObject; }
  /// The same for objects that are equal; by default one of the object itself.
  virtual std::int32_t GetHashCode() const;
};
