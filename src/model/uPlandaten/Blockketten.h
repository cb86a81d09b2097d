#pragma once

#include <map>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

class TVELPlan;
class TVELTermin;
class TVELVeranstaltung;

/// Blocks of lessons that take place side by side. Lessons join a block by their FBlockID; those of one block are
/// linked in a ring through FBlockNext. An appointment's FBlockID is its lesson's, a dot, and its place among the
/// lesson's appointments, counted from 1: appointments of one block with equal identifiers share a slot.
namespace uPlandaten {

/// Puts the lesson into the block of that name, or out of any for an empty one, and passes the identifier on to those
/// of its appointments that are in its block so far. The ring is left as it is, see RebuildBlocks.
/// @param AForce passes it on to all appointments, also if the lesson is in the block already
void SetBlockID(TVELVeranstaltung& ALesson, std::string_view AnID, bool AForce);

/// Makes the rings of all blocks anew, each in the order of lessons. A single lesson gets no link.
void RebuildBlocks(TVELPlan& APlan);

/// Finds the appointments that share a slot, for many appointments of a plan that does not change meanwhile.
class TBlockIndex {
 public:
  explicit TBlockIndex(const TVELPlan& APlan);

  /// The appointment itself first, then those with its identifier in the lessons of its ring; without ring, in all
  /// lessons of the plan. Itself alone, if it is in no block.
  std::vector<TVELTermin*> Partners(TVELTermin& ATermin) const;

 private:
  void FindRings(const std::vector<TVELVeranstaltung*>& ALessons);
  /// A lesson of the ring that the appointment's block is; null if there is none.
  const TVELVeranstaltung* RingOf(const TVELTermin& ATermin) const;

  std::unordered_map<const TVELVeranstaltung*, const TVELVeranstaltung*> FRings;  ///< of each lesson, if it is in one
  /// By ring and identifier; without ring, those of all lessons.
  std::map<std::pair<const TVELVeranstaltung*, std::string_view>, std::vector<TVELTermin*>> FTermine;
};

/// As TBlockIndex::Partners for one appointment; itself alone, if it belongs to no plan. Takes a walk over its ring;
/// over the plan, if there is none.
std::vector<TVELTermin*> BlockPartners(TVELTermin& ATermin);

}  // namespace uPlandaten
