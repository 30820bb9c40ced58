// LinkQueue: a first-in first-out queue of U32 values, each known by a U32
// index (the free lists of shared router ACL ids).
//
// Indexes are sequence numbers: enq() gives the new member the index after
// the newest one, wrapping within the index space (by default the whole U32
// range). Members may also be removed from the middle by index (teardown);
// the others keep their indexes. The walk goes from the oldest member.
//
// Invariant: the live members hold distinct indexes, so the distance from the
// oldest live member to the next index to give stays below the index space;
// an enq() that would break this raises RangeException "linkqueue index space
// full". An index that names no member raises "linkqueue index out of range".
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

#include "platform/vesper/Types.h"

namespace Vesper {

class LinkQueue {
 public:
   static constexpr U64 fullIndexSpace = U64( 1 ) << 32;

   // REQUIRES: 0 < indexSpace <= fullIndexSpace.
   explicit LinkQueue( U64 indexSpace = fullIndexSpace );

   // Appends at the tail; returns the index of the new member.
   U32 enq( U32 value );
   // Removes the oldest member and returns its value; nothing when empty.
   std::optional<U32> deq();
   std::optional<U32> front() const;

   U32 at( U32 index ) const;
   void valueIs( U32 index, U32 value );
   bool has( U32 index ) const;
   // Removes the member with this index and returns its value.
   U32 del( U32 index );
   void clear() { members_.clear(); }

   size_t size() const { return members_.size(); }
   bool empty() const { return members_.empty(); }
   U64 indexSpace() const { return indexSpace_; }
   // Index of the oldest member (the head), and the index the next enq() gives.
   std::optional<U32> headIndex() const;
   U32 tailIndex() const { return indexOf( nextSeq_ ); }

   // The values from the oldest.
   std::vector<U32> oldestFirst() const;

 private:
   U32 indexOf( U64 seq ) const { return static_cast<U32>( seq % indexSpace_ ); }
   // The sequence number of the live member with this index, if any.
   std::optional<U64> seqOf( U32 index ) const;

   U64 indexSpace_;
   U64 nextSeq_ = 0;             // unbounded; the index is its residue
   std::map<U64, U32> members_;  // by sequence number, oldest first
};

}  // namespace Vesper
