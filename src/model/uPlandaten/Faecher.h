#pragma once

#include <cstdint>
#include <string>

#include "uPlandaten/Basis.h"
#include "uPlandaten/Listen.h"
#include "uSchluessel/Schluessel.h"

/// A subject.
class TVELFach : public TVELPlanobjekt {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  bool FHintergrundfarbe = false;         ///< the subject's colour is the background of a lesson
  bool FVertretungsbereitschaft = false;  ///< marks a readiness to stand in, no teaching
  std::int32_t FMaxNachmittagsStdAnzahl = 0;
  std::int32_t FMinNachmittagsStdAnzahl = 0;
  bool FKeineAusfallstunde = false;
  bool FKeineVertretung = false;  ///< needs no substitution
  TVELRaumliste FRaeume{this};    ///< rooms of the subject
  TVELTeamsliste FTeams{this};    ///< departments
  TVELLehrerSollAenderungsSchluessel* FLehrerSollSchluessel = nullptr;
  std::string FSchluessel;  ///< statistical key
  TVELFachkategorie FFachkategorie = TVELFachkategorie::fkKeine;
  std::int32_t FFachfolge = 0;
  double FFaktor = 1;
  std::int32_t FAufgabenbereich = 0;
  TVELFachstatus* FFachstatus = nullptr;
};
