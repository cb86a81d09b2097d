#include "QuillonMaps.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "QuillonText.h"

namespace {

constexpr std::size_t MaxBuckets = 0x40000000;
/// Below it a stream would buy much memory with few entries.
constexpr double LowestReadFactor = 1.0 / 16;
/// How many times as many chains as they need the entries of a stream may have.
constexpr std::size_t Spare = 16;

std::int32_t HashOf(const TQuillonPersistent* AKey) { return AKey == nullptr ? 0 : AKey->GetHashCode(); }

std::size_t PlaceOf(std::int32_t AHash, std::size_t ABucketCount) {
  return static_cast<std::uint32_t>(AHash) & (ABucketCount - 1);
}

[[noreturn]] void RefuseMissing() { throw EQuillonCollectionError("Angefordertes Listenelement nicht gefunden."); }

}  // namespace

TQuillonHashTable::TQuillonHashTable(std::int32_t AnInitialCapacity, double ALoadFactor) : FLoadFactor(ALoadFactor) {
  if (AnInitialCapacity < 0) {
    throw EQuillonMapError("InitialCapacity muss größer oder gleich 0 sein.");
  }
  if (!(ALoadFactor > 0)) {
    throw EQuillonMapError("LoadFactor muss größer 0 sein.");
  }
  Resize(std::bit_ceil(std::min(static_cast<std::size_t>(AnInitialCapacity), MaxBuckets)));
}

void TQuillonHashTable::ReadFrom(TQuillonObjectReader& AReader, bool HaveItems) {
  const auto Wanted = static_cast<std::size_t>(QuillonClasses::ReadCount(AReader));
  const double LoadFactor = AReader.ReadDouble();
  if (!(LoadFactor >= LowestReadFactor)) {
    throw EQuillonReaderError();
  }
  std::vector<TEntry> Entries;
  for (std::int32_t Left = QuillonClasses::ReadCount(AReader); Left > 0; --Left) {
    TEntry& Entry = Entries.emplace_back();
    Entry.Key = AReader.ReadObject();
    Entry.Item = HaveItems ? AReader.ReadObject() : nullptr;
  }
  TQuillonHashTable Table(static_cast<std::int32_t>(std::min(Wanted, Spare * (Entries.size() + 1))), LoadFactor);
  // From the last one on: each becomes the head of its chain, so that the first one of a chain is its first again.
  std::ranges::reverse(Entries);
  for (TEntry& Entry : Entries) {
    const auto [Own, IsFresh] = Table.Put(std::move(Entry.Key));
    if (!IsFresh) {
      throw EQuillonReaderError();
    }
    Own->Item = std::move(Entry.Item);
  }
  Table.FIgnoreEquals = FIgnoreEquals;
  *this = std::move(Table);
}

void TQuillonHashTable::WriteTo(TQuillonObjectWriter& AWriter, bool HaveItems) const {
  AWriter.WriteLongInt(BucketCount());
  AWriter.WriteDouble(FLoadFactor);
  AWriter.WriteLongInt(FCount);
  for (const TBucket& Bucket : FBuckets) {
    for (const TEntry& Entry : Bucket) {
      AWriter.WriteObject(Entry.Key.get());
      if (HaveItems) {
        AWriter.WriteObject(Entry.Item.get());
      }
    }
  }
}

const TQuillonHashTable::TEntry* TQuillonHashTable::Find(const TQuillonPersistent* AKey) const {
  if (FCount == 0) {
    return nullptr;
  }
  const std::int32_t Hash = HashOf(AKey);
  const TBucket& Bucket = FBuckets[PlaceOf(Hash, FBuckets.size())];
  const auto Found = std::ranges::find_if(Bucket, [&](const TEntry& AnEntry) { return Matches(AnEntry, Hash, AKey); });
  return Found == Bucket.end() ? nullptr : &*Found;
}

std::pair<TQuillonHashTable::TEntry*, bool> TQuillonHashTable::Put(TQuillonItem AKey) {
  const std::int32_t Hash = HashOf(AKey.get());
  TBucket& Bucket = BucketOf(Hash);
  const auto Present = std::next(FindBefore(Bucket, Hash, AKey.get()));
  if (Present != Bucket.end()) {
    return {&*Present, false};
  }
  TEntry& Entry = Bucket.emplace_front(TEntry{Hash, std::move(AKey), nullptr});
  if (++FCount >= FThreshold) {
    Resize(2 * FBuckets.size());
  }
  return {&Entry, true};
}

bool TQuillonHashTable::Take(const TQuillonPersistent* AKey, TEntry& AnEntry) {
  const std::int32_t Hash = HashOf(AKey);
  TBucket& Bucket = BucketOf(Hash);
  const auto Before = FindBefore(Bucket, Hash, AKey);
  if (std::next(Before) == Bucket.end()) {
    return false;
  }
  AnEntry = std::move(*std::next(Before));
  Bucket.erase_after(Before);
  --FCount;
  return true;
}

std::vector<TQuillonHashTable::TEntry> TQuillonHashTable::Entries() const {
  std::vector<TEntry> Entries;
  for (const TBucket& Bucket : FBuckets) {
    Entries.insert(Entries.end(), Bucket.begin(), Bucket.end());
  }
  return Entries;
}

void TQuillonHashTable::Clear() {
  std::ranges::for_each(FBuckets, &TBucket::clear);
  FCount = 0;
}

TQuillonHashTable::TBucket& TQuillonHashTable::BucketOf(std::int32_t AHash) {
  return FBuckets[PlaceOf(AHash, FBuckets.size())];
}

bool TQuillonHashTable::Matches(const TEntry& AnEntry, std::int32_t AHash, const TQuillonPersistent* AKey) const {
  return AnEntry.Hash == AHash &&
         ((FIgnoreEquals && AnEntry.Key.get() == AKey) || QuillonClasses::AreEqual(AnEntry.Key.get(), AKey));
}

/// The place before the key's entry, or before the end.
TQuillonHashTable::TBucket::iterator TQuillonHashTable::FindBefore(TBucket& ABucket, std::int32_t AHash,
                                                                   const TQuillonPersistent* AKey) const {
  auto Before = ABucket.before_begin();
  for (auto Entry = ABucket.begin(); Entry != ABucket.end() && !Matches(*Entry, AHash, AKey); ++Entry) {
    Before = Entry;
  }
  return Before;
}

/// A table that has reached its largest size keeps it.
void TQuillonHashTable::Resize(std::size_t ABucketCount) {
  if (ABucketCount > MaxBuckets) {
    FThreshold = std::numeric_limits<std::int32_t>::max();
    return;
  }
  std::vector<TBucket> Old(ABucketCount);
  Old.swap(FBuckets);
  for (TBucket& Bucket : Old) {
    while (!Bucket.empty()) {
      TBucket& Target = BucketOf(Bucket.front().Hash);
      Target.splice_after(Target.before_begin(), Bucket, Bucket.before_begin());
    }
  }
  const double Threshold = std::nearbyint(static_cast<double>(ABucketCount) * FLoadFactor);
  FThreshold = static_cast<std::int32_t>(std::min<double>(Threshold, std::numeric_limits<std::int32_t>::max()));
}

const TQuillonHashTable::TEntry& TQuillonHashIterator::Next() {
  if (!HasNext()) {
    RefuseMissing();
  }
  return FEntries[FNext++];
}

TQuillonItem TQuillonHashIterator::Remove() {
  TQuillonHashTable::TEntry Entry;
  if (FNext == 0 || !FTable.Take(FEntries[FNext - 1].Key.get(), Entry)) {
    RefuseMissing();
  }
  return Entry.Item;
}

bool TQuillonHashMap::ContainsItem(const TQuillonPersistent* AnItem) const {
  return std::ranges::any_of(FTable.Entries(), [AnItem](const TQuillonHashTable::TEntry& AnEntry) {
    return QuillonClasses::AreEqual(AnEntry.Item.get(), AnItem);
  });
}

TQuillonItem TQuillonHashMap::GetItem(const TQuillonPersistent* AKey) const {
  const TQuillonHashTable::TEntry* const Entry = FTable.Find(AKey);
  return Entry == nullptr ? nullptr : Entry->Item;
}

TQuillonItem TQuillonHashMap::PutItem(TQuillonItem AKey, const TQuillonItem& AnItem) {
  return std::exchange(FTable.Put(std::move(AKey)).first->Item, AnItem);
}

TQuillonItem TQuillonHashMap::RemoveItem(const TQuillonPersistent* AKey) {
  TQuillonHashTable::TEntry Entry;
  return FTable.Take(AKey, Entry) ? Entry.Item : nullptr;
}

TQuillonItem TQuillonHashSet::Remove(const TQuillonPersistent* AnItem) {
  TQuillonHashTable::TEntry Entry;
  return FTable.Take(AnItem, Entry) ? Entry.Key : nullptr;
}

std::vector<TQuillonItem> TQuillonHashSet::Items() const {
  std::vector<TQuillonItem> Items;
  for (TQuillonHashTable::TEntry& Entry : FTable.Entries()) {
    Items.push_back(std::move(Entry.Key));
  }
  return Items;
}

void TQuillonPropertyList::Refuse(std::string_view AName) {
  throw EQuillonConvertError("Die Eigenschaft " + QuillonText::Quoted(AName) + " hat keinen solchen Wert.");
}
