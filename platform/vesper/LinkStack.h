// LinkStack: a stack of U8 values, each known by a U32 index.
//
// push() gives the new member the next index (the number of members below
// it), pop() removes the newest member, and the walk goes from the top down.
// The index space is bounded (by default the whole U32 range); a push onto a
// stack that fills it raises RangeException "linkstack index space full", and
// an index that names no member raises "linkstack index out of range".
//
// Invariant: the members hold the indexes 0 to size() - 1, the top the highest.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/vesper/Types.h"

namespace Vesper {

class LinkStack {
 public:
   static constexpr U64 fullIndexSpace = U64( 1 ) << 32;

   // REQUIRES: 0 < indexSpace <= fullIndexSpace.
   explicit LinkStack( U64 indexSpace = fullIndexSpace );

   // Returns the index of the new member.
   U32 push( U8 value );
   // Removes the top member and returns its value; nothing when empty.
   std::optional<U8> pop();
   std::optional<U8> top() const;

   U8 at( U32 index ) const;
   void valueIs( U32 index, U8 value );

   size_t size() const { return values_.size(); }
   bool empty() const { return values_.empty(); }
   U64 indexSpace() const { return indexSpace_; }
   void clear() { values_.clear(); }

   // The values from the top down.
   std::vector<U8> topFirst() const;

 private:
   void checkIndex( U32 index ) const;

   U64 indexSpace_;
   std::vector<U8> values_;  // bottom first: values_[index]
};

}  // namespace Vesper
