// Internal to sim/tcam. Sim::TcamUnit: what the simulated TCAM managers keep of one unit, next
// to the unit's chip model: the slices of each stage and the groups that hold them, the use of
// each group, a record of every entry they issued, and the pools of range checkers and
// user-defined field chunks that entries share.
//
// Slices: each stage of the chip (ChipConfig::slices) is a pool of slices, and a slice serves
// one group at a time. A group takes the first free slice when its own slices are full, and
// gives a slice back as soon as no entry of the group stands in it (after its last entry goes,
// or after compress() moves its entries into the group's earlier slices). A narrow group gets a
// slice's narrow entries from it, a wide group half of them. So the groups of a stage compete:
// what a group can still get is the room in its own slices plus what the free slices would give
// it, within its capacity. A stage without slices is not divided: there a group's capacity is
// its only limit.
//
// Invariants:
//   1. Every entry record stands for a chip entry of the same id in the chip group numbered as
//      the record's assignment; entries are made and destroyed only through entryIs/entryDel.
//   2. A group's inUse is the number of records of its assignment, never above its capacity.
//   3. Chip group ids are the assignment numbers, so that a verdict's hits name the group.
//   4. On a divided stage every entry lies in a slice its group holds; a slice's used count is
//      the number of entries in it, never above what it gives its group; a held slice has at
//      least one entry, and a free slice none.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "platform/halyard/RangeCheckerDesc.h"
#include "platform/shim/BcmTypes.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"
#include "sim/chip/ChipModel.h"
#include "sim/tcam/GroupTable.h"
#include "sim/tcam/SharedResourcePool.h"
#include "sim/tcam/UnitLimits.h"

namespace Sim {

// What a manager records of an entry beyond what the chip holds.
struct TcamEntryRecord {
   Halyard::TcamGroupAssignment assignment{};
   std::optional<U32> slice;    // its slice of the stage; none on a stage not divided
   Vesper::String description;  // the owner or purpose, for dumps
   std::optional<int> ipType;   // the SDK value given to qualifyIpType
   bcm_pbmp_t portData;         // the port key as given to addInPortsForEntry
   bcm_pbmp_t portMask;
   bool portKeyPermanent = false;
};

struct GroupUse {
   Stage stage = Stage::Ifp;
   bool wide = false;
   U32 capacity = 0;
   U32 inUse = 0;
   // The ordinal the next acquired entry gets; entries of equal priority hit in ordinal order.
   U64 nextOrdinal = 0;
   std::vector<U32> slices;  // the slices it holds, ascending
};

struct SliceUse {
   U32 narrow = 0;  // narrow entries of the slice
   std::optional<Halyard::TcamGroupAssignment> owner;
   U32 used = 0;
};

// A user-defined field chunk as the chip defines it: base, byte offset, length.
using UdfKey = std::tuple<UdfBase, U8, U8>;

inline GroupId chipGroupOf( Halyard::TcamGroupAssignment a ) {
   return static_cast<GroupId>( a );
}

class TcamUnit {
 public:
   // Creates a chip group for every row of `table`. REQUIRES: the chip has none of them yet.
   TcamUnit( ChipModel& chip, const GroupTable& table, const UnitLimits& limits );
   TcamUnit( const TcamUnit& ) = delete;
   TcamUnit& operator=( const TcamUnit& ) = delete;

   ChipModel& chip() const { return chip_; }
   const UnitLimits& limits() const { return limits_; }

   GroupUse& group( Halyard::TcamGroupAssignment a ) { return groups_.at( a ); }
   const GroupUse& group( Halyard::TcamGroupAssignment a ) const { return groups_.at( a ); }
   const std::map<Halyard::TcamGroupAssignment, GroupUse>& groups() const { return groups_; }

   // Slices of a stage; empty for a stage not divided.
   const std::vector<SliceUse>& slices( Stage s ) const {
      return slices_[static_cast<std::size_t>( s )];
   }
   U32 freeSlices( Stage s ) const;
   // How many more entries the group can have now: the room in its own slices and what the
   // stage's free slices would give it, within its capacity.
   U32 available( Halyard::TcamGroupAssignment a ) const;
   // Moves the group's entries, in lookup order, into its first slices and gives back the
   // slices left empty. Lookups do not change: the order of entries is not the order of slices.
   void compress( Halyard::TcamGroupAssignment a );

   TcamEntryRecord* entry( U32 id );
   const TcamEntryRecord* entry( U32 id ) const;
   // Makes the entry on the chip, in the group of `a`, at `priority` and `ordinal`, in a slice
   // of the group (taking a free one when its own are full).
   // REQUIRES: the id is free on the chip and available( a ) > 0.
   void entryIs( U32 id, Halyard::TcamGroupAssignment a, U32 priority, U64 ordinal,
                 const Vesper::String& description );
   // Destroys the entry on the chip, which lets go of its checkers and chunks; a slice it
   // leaves empty goes back to the stage.
   void entryDel( U32 id );

   SharedResourcePool<Halyard::RangeCheckerDesc>& rangeCheckers() { return rangeCheckers_; }
   const SharedResourcePool<Halyard::RangeCheckerDesc>& rangeCheckers() const {
      return rangeCheckers_;
   }
   SharedResourcePool<UdfKey>& udfChunks() { return udfChunks_; }
   const SharedResourcePool<UdfKey>& udfChunks() const { return udfChunks_; }

   // Bindings made in each compression table, by ExactClassTable, then IPv4 and IPv6 prefixes.
   std::array<U32, 4>& exactClassBindings() { return exactClassBindings_; }
   U32& dstIpClassBindings() { return dstIpClassBindings_; }
   U32& dstIp6ClassBindings() { return dstIp6ClassBindings_; }

 private:
   U32 perSlice( const GroupUse& g, const SliceUse& s ) const {
      return g.wide ? s.narrow / 2 : s.narrow;
   }
   std::vector<SliceUse>& stageSlices( Stage s ) { return slices_[static_cast<std::size_t>( s )]; }
   // The slice for one more entry of the group: the first of its own with room, else the
   // first free slice of the stage, which the group takes.
   U32 slicePlace( Halyard::TcamGroupAssignment a );
   void sliceLeave( Halyard::TcamGroupAssignment a, U32 slice );

   ChipModel& chip_;
   UnitLimits limits_;
   std::array<std::vector<SliceUse>, kStageCount> slices_;
   std::map<Halyard::TcamGroupAssignment, GroupUse> groups_;
   std::unordered_map<U32, TcamEntryRecord> entries_;
   SharedResourcePool<Halyard::RangeCheckerDesc> rangeCheckers_;
   SharedResourcePool<UdfKey> udfChunks_;
   std::array<U32, 4> exactClassBindings_{};
   U32 dstIpClassBindings_ = 0;
   U32 dstIp6ClassBindings_ = 0;
};

// The chip's checker for a range; nullopt for a type the chip does not compare.
std::optional<RangeChecker> chipRangeChecker( const Halyard::RangeCheckerDesc& desc );

}  // namespace Sim
