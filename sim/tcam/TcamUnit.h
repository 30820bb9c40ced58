// Internal to sim/tcam. Sim::TcamUnit: what the simulated TCAM managers keep of one unit, next
// to the unit's chip model: the use of each group, a record of every entry they issued, and
// the pools of range checkers and user-defined field chunks that entries share.
//
// Invariants:
//   1. Every entry record stands for a chip entry of the same id in the chip group numbered as
//      the record's assignment; entries are made and destroyed only through entryIs/entryDel.
//   2. A group's inUse is the number of records of its assignment, never above its capacity.
//   3. Chip group ids are the assignment numbers, so that a verdict's hits name the group.
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
   Vesper::String description;  // the owner or purpose, for dumps
   std::optional<int> ipType;   // the SDK value given to qualifyIpType
   bcm_pbmp_t portData;         // the port key as given to addInPortsForEntry
   bcm_pbmp_t portMask;
   bool portKeyPermanent = false;
};

struct GroupUse {
   U32 capacity = 0;
   U32 inUse = 0;
   // The ordinal the next acquired entry gets; entries of equal priority hit in ordinal order.
   U64 nextOrdinal = 0;
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

   TcamEntryRecord* entry( U32 id );
   const TcamEntryRecord* entry( U32 id ) const;
   // Makes the entry on the chip, in the group of `a`, at `priority` and `ordinal`.
   // REQUIRES: the id is free on the chip and the group has room.
   void entryIs( U32 id, Halyard::TcamGroupAssignment a, U32 priority, U64 ordinal,
                 const Vesper::String& description );
   // Destroys the entry on the chip, which lets go of its checkers and chunks.
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
   ChipModel& chip_;
   UnitLimits limits_;
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
