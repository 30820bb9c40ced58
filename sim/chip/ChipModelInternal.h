// Internal to the chip model: the group record and its lookup table.
#pragma once

#include <vector>

#include "sim/chip/ChipModel.h"
#include "sim/chip/EntryRecord.h"
#include "sim/chip/GroupIndex.h"

namespace Sim {

// One installed, enabled entry that can match, in the lookup order of its group. Its first
// (most selective) term stands inline, so that most entries are refused from this record
// alone; the pointers a hit needs are kept apart in GroupRecord::slotEntries.
struct LookupSlot {
   U64 mask0;
   U64 value0;
   U32 restBegin;  // the other terms, in GroupRecord::terms
   U16 restCount;
   U8 word0;
   bool plain;  // no InPorts, range checkers or UDF terms: the key terms decide alone
};

struct ChipModel::GroupRecord {
   GroupId id = 0;
   Stage stage = Stage::Ifp;
   S32 priority = 0;
   KeySet keys = KeySet::all();
   std::vector<EntryRecord*> members;  // unordered

   // The index, when the chip looks up by index. Changes of entries wait in indexPending and
   // reach the index before the next lookup of the group (indexFlush): an entry that is
   // installed, disabled, enabled and given its ports in one programming run is placed once,
   // and programming pays for no lookup structure it does not use.
   GroupIndex index;
   std::vector<EntryId> indexPending;

   // The scan's table, rebuilt before the next scan whenever an entry of the group changes in
   // hardware.
   bool tableDirty = true;
   std::vector<LookupSlot> slots;
   std::vector<EntryRecord*> slotEntries;  // by slot index
   std::vector<MatchTerm> terms;           // the slots' further terms, back to back
};

// The order in which a group's entries are looked up: priority descending, then ordinal
// ascending (the SDK keeps equal priorities in the order it was given), then id ascending.
inline bool lookupBefore( const EntryRecord* a, const EntryRecord* b ) {
   if ( a->priority != b->priority ) {
      return a->priority > b->priority;
   }
   if ( a->ordinal != b->ordinal ) {
      return a->ordinal < b->ordinal;
   }
   return a->id < b->id;
}

}  // namespace Sim
