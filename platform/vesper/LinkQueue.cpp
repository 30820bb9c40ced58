#include "platform/vesper/LinkQueue.h"

#include "platform/vesper/Assert.h"
#include "platform/vesper/Exception.h"

namespace Vesper {

LinkQueue::LinkQueue( U64 indexSpace ) : indexSpace_( indexSpace ) {
   VESPER_ASSERT( indexSpace > 0 && indexSpace <= fullIndexSpace );
}

U32 LinkQueue::enq( U32 value ) {
   if ( !members_.empty() && nextSeq_ - members_.begin()->first >= indexSpace_ ) {
      throw RangeException( "linkqueue index space full" );
   }
   members_.emplace( nextSeq_, value );
   return indexOf( nextSeq_++ );
}

std::optional<U32> LinkQueue::deq() {
   if ( members_.empty() ) {
      return std::nullopt;
   }
   const U32 value = members_.begin()->second;
   members_.erase( members_.begin() );
   return value;
}

std::optional<U32> LinkQueue::front() const {
   if ( members_.empty() ) {
      return std::nullopt;
   }
   return members_.begin()->second;
}

std::optional<U64> LinkQueue::seqOf( U32 index ) const {
   if ( members_.empty() || index >= indexSpace_ ) {
      return std::nullopt;
   }
   // Live members span less than the index space, so exactly one sequence
   // number in [oldest, oldest + indexSpace) has this index.
   const U64 oldest = members_.begin()->first;
   const U64 seq = oldest + ( index + indexSpace_ - indexOf( oldest ) ) % indexSpace_;
   if ( !members_.contains( seq ) ) {
      return std::nullopt;
   }
   return seq;
}

bool LinkQueue::has( U32 index ) const {
   return seqOf( index ).has_value();
}

U32 LinkQueue::at( U32 index ) const {
   const auto seq = seqOf( index );
   if ( !seq ) {
      throw RangeException( "linkqueue index out of range" );
   }
   return members_.at( *seq );
}

void LinkQueue::valueIs( U32 index, U32 value ) {
   const auto seq = seqOf( index );
   if ( !seq ) {
      throw RangeException( "linkqueue index out of range" );
   }
   members_[*seq] = value;
}

U32 LinkQueue::del( U32 index ) {
   const auto seq = seqOf( index );
   if ( !seq ) {
      throw RangeException( "linkqueue index out of range" );
   }
   const U32 value = members_.at( *seq );
   members_.erase( *seq );
   return value;
}

std::optional<U32> LinkQueue::headIndex() const {
   if ( members_.empty() ) {
      return std::nullopt;
   }
   return indexOf( members_.begin()->first );
}

std::vector<U32> LinkQueue::oldestFirst() const {
   std::vector<U32> values;
   values.reserve( members_.size() );
   for ( const auto& [seq, value] : members_ ) {
      values.push_back( value );
   }
   return values;
}

}  // namespace Vesper
