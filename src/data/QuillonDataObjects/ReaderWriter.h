#pragma once

#include <cstdint>
#include <vector>

#include "QuillonTypes.h"

class TQuillonDataAbstractObject;
class TQuillonDataClass;
class TQuillonDataObject;
class TQuillonDataStorage;
struct TGUID;

/// A data file that does not hold what a class table demands.
class EQuillonDataObjectReaderError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// A form of data files, the reading side. A form walks the rows of a class table and knows nothing of classes.
class TQuillonDataObjectReader {
 public:
  explicit TQuillonDataObjectReader(TQuillonDataStorage& AStorage) : FStorage(AStorage) {}
  TQuillonDataObjectReader(const TQuillonDataObjectReader&) = delete;
  TQuillonDataObjectReader& operator=(const TQuillonDataObjectReader&) = delete;
  virtual ~TQuillonDataObjectReader() = default;

  TQuillonDataStorage& Storage() const { return FStorage; }

  /// Reads every row of the object's class, base rows first, from where the reader stands.
  /// @throws EQuillonDataObjectReaderError with the place, where the file does not fit the table
  virtual void ReadRows(TQuillonDataAbstractObject& AnObject) = 0;

 protected:
  /// The storage's object with the identity whose class is ABase or descends from it; null if there is none yet.
  TQuillonDataObject* FindKnown(const TQuillonDataClass& ABase, const TGUID& AnID) const;
  /// A bare object of the storage, to be filled now or later.
  TQuillonDataObject& Create(const TQuillonDataClass& AClass, const TGUID& AnID) const;
  /// What becomes of an object that nobody holds when its content cannot be read.
  enum class TFailed : std::uint8_t { Freed, LeftToStorage };
  /// Reads the object from where the reader stands.
  /// @throws EQuillonDataObjectReaderError for an object that holds itself, or too many levels
  void ReadContent(TQuillonDataObject& AnObject, TFailed AFailed);

 private:
  TQuillonDataStorage& FStorage;
  std::vector<TQuillonDataObject*> FBeingRead;  ///< one in the other
};

/// A form of data files, the writing side.
class TQuillonDataObjectWriter {
 public:
  TQuillonDataObjectWriter() = default;
  TQuillonDataObjectWriter(const TQuillonDataObjectWriter&) = delete;
  TQuillonDataObjectWriter& operator=(const TQuillonDataObjectWriter&) = delete;
  virtual ~TQuillonDataObjectWriter() = default;

  /// Writes every row of the object's class that is not retired, base rows first.
  virtual void WriteRows(const TQuillonDataAbstractObject& AnObject) = 0;
};
