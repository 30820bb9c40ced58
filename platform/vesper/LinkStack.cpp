#include "platform/vesper/LinkStack.h"

#include "platform/vesper/Assert.h"
#include "platform/vesper/Exception.h"

namespace Vesper {

LinkStack::LinkStack( U64 indexSpace ) : indexSpace_( indexSpace ) {
   VESPER_ASSERT( indexSpace > 0 && indexSpace <= fullIndexSpace );
}

U32 LinkStack::push( U8 value ) {
   if ( values_.size() >= indexSpace_ ) {
      throw RangeException( "linkstack index space full" );
   }
   values_.push_back( value );
   return static_cast<U32>( values_.size() - 1 );
}

std::optional<U8> LinkStack::pop() {
   if ( values_.empty() ) {
      return std::nullopt;
   }
   const U8 value = values_.back();
   values_.pop_back();
   return value;
}

std::optional<U8> LinkStack::top() const {
   if ( values_.empty() ) {
      return std::nullopt;
   }
   return values_.back();
}

U8 LinkStack::at( U32 index ) const {
   checkIndex( index );
   return values_[index];
}

void LinkStack::valueIs( U32 index, U8 value ) {
   checkIndex( index );
   values_[index] = value;
}

std::vector<U8> LinkStack::topFirst() const {
   return { values_.rbegin(), values_.rend() };
}

void LinkStack::checkIndex( U32 index ) const {
   if ( index >= values_.size() ) {
      throw RangeException( "linkstack index out of range" );
   }
}

}  // namespace Vesper
