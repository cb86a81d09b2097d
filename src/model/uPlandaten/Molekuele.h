#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "QuillonTypes.h"
#include "uPlandaten/Listen.h"

class TVELPlan;
class TVELTermin;
class TVELVeranstaltung;

/// Appointments that are bound together in time and place: those that share the slot of a block
/// (uPlandaten::BlockPartners). None of its lists owns.
class TVELMolecule : public TQuillonObject {
 public:
  std::int32_t Tag = 0;  ///< scratch value of the running program
  TVELTerminliste Atoms;

  TVELMolecule() = default;
  TVELMolecule(const TVELMolecule&) = delete;
  TVELMolecule& operator=(const TVELMolecule&) = delete;
  /// Its atoms stay, without molecule.
  ~TVELMolecule() override;

  /// Classes and teachers of the atoms, each once.
  const TVELPlanobjektliste& Members();
  /// Members and rooms of the atoms, each once.
  const TVELPlanobjektliste& Resources();
  /// Takes members and resources from the atoms, at the next look at them.
  void Update();
  /// Takes the appointments that are bound to ATermin, then Update. Does nothing unless it has a molecule.
  void Update(TVELTermin& ATermin);
  /// As above with appointments that were found already.
  void Update(std::span<TVELTermin* const> AGroup);
  /// Takes an atom out; the order of the others is none.
  void Remove(TVELTermin& ATermin);
  /// Takes an object, which is freed, out of members and resources.
  void RemoveObject(const TVELPlanobjekt& AnObject);

 private:
  void LetGo();
  void Refresh();

  TVELPlanobjektliste FMembers;
  TVELPlanobjektliste FResources;
  bool FIsStale = false;  ///< members and resources are of other atoms
};

/// The molecules of a plan. They are derived data: made when they are asked for, and made anew when the plan has
/// changed since. Their pointers hold until then.
class TVELMoleculeList {
 public:
  explicit TVELMoleculeList(TVELPlan& APlan) : FPlan(APlan) {}

  bool LockUpdate = false;  ///< keeps the molecules as they are

  /// The molecules, in the order of the plan's lessons and their appointments.
  const std::vector<std::unique_ptr<TVELMolecule>>& Items();
  /// The molecule of an appointment of the plan; null for one that came while updates are locked.
  TVELMolecule* Find(TVELTermin& ATermin);
  /// Forgets all molecules.
  void Clear();
  /// Makes all molecules anew.
  void Update();
  /// Brings those of the lesson's appointments up to date, unless updates are locked.
  void Update(TVELVeranstaltung& ALesson);
  void Update(TVELTermin& ATermin);
  /// Takes the appointment out of its molecule.
  static void RemoveTermin(TVELTermin& ATermin);
  /// Takes the object, which is freed, out of all molecules.
  void RemoveObject(const TVELPlanobjekt& AnObject);

 private:
  void Refresh();
  bool CanUpdate(const TVELTermin& ATermin) const;

  std::vector<std::unique_ptr<TVELMolecule>> FItems;
  TVELPlan& FPlan;
  bool FIsMade = false;
  std::uint64_t FChangeCount = 0;  ///< of the plan, when they were made
};
