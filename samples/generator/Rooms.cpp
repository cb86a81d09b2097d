#include "School.h"
#include "Subjects.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Gebaeude.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Teams.h"
#include "uSchluessel/Verzeichnisse.h"

namespace SchoolGenerator {

namespace {

/// Rooms of each type in a section, of a large school and of a small one.
struct TRoomCount {
  int Large;
  int Small;
};
constexpr std::array<TRoomCount, 9> RoomCounts = {
    {{56, 13}, {4, 1}, {3, 1}, {4, 2}, {3, 1}, {3, 1}, {3, 1}, {6, 2}, {2, 1}}};

void MakeBuildings(TSchool& ASchool) {
  int Number = 0;
  for (const std::string_view Name : {"Altbau", "Neubau \"Süd\"", "Fachtrakt", "Sporthalle; Mensa"}) {
    auto& Building = ASchool.Add<TVELGebaeude>(ASchool.Plan.FGebaeude);
    Building.FKuerzel = std::string(1, static_cast<char>('A' + Number));
    Building.FBezeichnung = Name;
    Building.FWegzeit = 2 + Number;
    Building.FCampus = Number < 3 ? "Grüne Gasse" : "Am Mühlbach";
    ++Number;
  }
}

/// Place of the building whose rooms have the type.
int BuildingOf(std::size_t AType, int ANumber) {
  constexpr std::size_t Hall = 7;
  return AType == 0 ? ANumber % 2 : (AType < Hall ? 2 : 3);
}

void EquipRoom(TSchool& ASchool, TVELRaum& ARoom) {
  TVELVerzeichnisse& Keys = *ASchool.Plan.FVerzeichnisse;
  auto& Beamer = ASchool.Add<TVELAusstattung>(ARoom.FAusstattungen);
  Beamer.FAnzahl = 1;
  Beamer.FKategorie = Keys.FRessourcenkategorien.GetItem(1);
  if (ASchool.Random.Chance(20)) {
    auto& Tablets = ASchool.Add<TVELAusstattung>(ARoom.FAusstattungen);
    Tablets.FAnzahl = static_cast<std::uint8_t>(ASchool.Random.Between(5, 30));
    Tablets.FKategorie = Keys.FRessourcenkategorien.GetItem(0);
    Tablets.FBemerkung = "Koffer \"" + ARoom.FKuerzel + "\"; Schlüssel im Sekretariat";
  }
}

void MakeRoom(TSchool& ASchool, TSection& ASection, std::size_t AType) {
  const int Number = static_cast<int>(ASection.Rooms.size());
  const int Building = BuildingOf(AType, Number);
  const int Floor = Number / 2 % 4;
  auto& Room = ASchool.Add<TVELRaum>(ASchool.Plan.FRaeume);
  ASection.Rooms.push_back({&Room, AType, {}});
  Room.FGebaeude = ASchool.Plan.FGebaeude.GetItem(Building);
  Room.FKuerzel = Room.FGebaeude->FKuerzel + std::to_string(Floor) + (Number < 10 ? "0" : "") + std::to_string(Number) +
                  ASection.Suffix;
  Room.FRaumtyp = ASchool.Plan.FVerzeichnisse->FRaumtypen.GetItem(static_cast<int>(AType));
  Room.FBezeichnung = Room.FRaumtyp->FBezeichnung + " " + Room.FKuerzel;
  Room.FEbene = Floor == 0 ? "EG" : std::to_string(Floor) + ". OG";
  Room.FKapazitaet = AType == 0 ? ASchool.Random.Between(28, 34) : ASchool.Random.Between(24, 60);
  Room.FGewichtung = AType == 0 ? 1 : 5;
  Room.FZwingend = AType != 0;
  Room.FUserName = ASchool.Random.Chance(10) ? "raum." + Room.FKuerzel : "";
  Room.FBarcode = Number % 3 == 0 ? "R" + std::to_string(400000 + 1000 * ASection.Number + Number) : "";
  Room.FFarbe = AType == 0 ? NoColour : 0xD0E8D0;
  Room.FBemerkung = ASchool.SomeRemark(5);
  EquipRoom(ASchool, Room);
}

/// Departments have the special rooms of their subjects.
void ShareRooms(TSchool& ASchool, TSection& ASection) {
  for (std::size_t I = 0; I < SubjectTable.size(); ++I) {
    const TSubject& Row = SubjectTable[I];
    if (Row.RoomType == 0) {
      continue;
    }
    for (const TRoom& Room : ASection.Rooms) {
      if (Room.Type == Row.RoomType) {
        Room.Raum->FTeams.Merge(ASchool.Plan.FTeams.GetItem(Row.Team));
        if (ASection.Number == 0) {
          ASchool.Subjects[I]->FRaeume.Append(Room.Raum);
        }
      }
    }
  }
}

void MakeResources(TSchool& ASchool, TSection& ASection) {
  TVELVerzeichnisse& Keys = *ASchool.Plan.FVerzeichnisse;
  for (int I = 0; I < ASchool.Count(12); ++I) {
    auto& Resource = ASchool.Add<TVELRessource>(ASchool.Plan.FRessourcen);
    Resource.FKategorie = Keys.FRessourcenkategorien.GetItem(I % Keys.FRessourcenkategorien.Count());
    Resource.FKuerzel = Resource.FKategorie->FKuerzel + std::to_string(I + 1) + ASection.Suffix;
    Resource.FBezeichnung = Resource.FKategorie->FBezeichnung + " Nr. " + std::to_string(I + 1);
    Resource.FMerkmal = Keys.FRessourcenmerkmale.GetItem(I % 2);
    Resource.FBarcode = "X" + std::to_string(900000 + 100 * ASection.Number + I);
    Resource.FStammraum = ASchool.Random.Pick(ASection.Rooms).Raum;
    Resource.FRaum = ASchool.Random.Chance(50) ? Resource.FStammraum : nullptr;
    Resource.FRuecklaufzeit = I % 2 == 0 ? 15 : 7.5;
    Resource.FTeam = ASchool.Plan.FTeams.GetItem(I % ASchool.Plan.FTeams.Count());
  }
}

}  // namespace

void MakeRooms(TSchool& ASchool) {
  MakeBuildings(ASchool);
  for (TSection& Section : ASchool.Sections) {
    // The rooms are pointed at from now on.
    Section.Rooms.reserve(128);
    for (std::size_t Type = 0; Type < RoomCounts.size(); ++Type) {
      const int Count = ASchool.Options.Small ? RoomCounts[Type].Small : RoomCounts[Type].Large;
      for (int I = 0; I < Count; ++I) {
        MakeRoom(ASchool, Section, Type);
      }
    }
    for (std::size_t I = 1; I < Section.Rooms.size(); ++I) {
      if (Section.Rooms[I].Type == Section.Rooms[I - 1].Type && I % 3 == 0) {
        Section.Rooms[I].Raum->FAlternative = Section.Rooms[I - 1].Raum;
      }
    }
    ShareRooms(ASchool, Section);
    MakeResources(ASchool, Section);
  }
}

}  // namespace SchoolGenerator
