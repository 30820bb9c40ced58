#include "platform/halyard/QualIdList.h"

#include <algorithm>

#include "platform/pylon/ValueHash.h"

namespace Halyard {

QualIdList::QualIdList( std::initializer_list<U32> ids ) {
   for ( U32 id : ids ) {
      qualIdIs( id );
   }
}

void QualIdList::qualIdIs( U32 id ) {
   auto it = std::lower_bound( ids_.begin(), ids_.end(), id );
   if ( it == ids_.end() || *it != id ) {
      ids_.insert( it, id );
   }
}

bool QualIdList::qualIdHas( U32 id ) const {
   return std::binary_search( ids_.begin(), ids_.end(), id );
}

void QualIdList::qualIdDel( U32 id ) {
   auto it = std::lower_bound( ids_.begin(), ids_.end(), id );
   if ( it != ids_.end() && *it == id ) {
      ids_.erase( it );
   }
}

U32 QualIdList::hash() const {
   Pylon::OneAtATimeHash h;
   for ( U32 id : ids_ ) {
      h.addU32( id );
   }
   return h.value();
}

namespace {

constexpr std::string_view typeName = "Halyard::QualIdList";

QualIdList parseIds( std::string_view raw ) {
   if ( raw.size() < 2 || raw.front() != '[' || raw.back() != ']' ) {
      throw Vesper::ParseException( "expected [id, ...]" );
   }
   raw = raw.substr( 1, raw.size() - 2 );
   QualIdList list;
   while ( !raw.empty() ) {
      std::size_t comma = std::min( raw.find( ", " ), raw.size() );
      auto n = Pylon::parseUnsigned( raw.substr( 0, comma ) );
      if ( !n || *n > 0xFFFFFFFF ) {
         throw Vesper::ParseException( "expected a qualifier id" );
      }
      list.qualIdIs( static_cast<U32>( *n ) );
      raw.remove_prefix( std::min( comma + 2, raw.size() ) );
   }
   return list;
}

}  // namespace

std::string valueToStrep( const QualIdList& list ) {
   std::string ids = "[";
   for ( U32 id : list ) {
      ids += ( ids.size() > 1 ? ", " : "" ) + std::to_string( id );
   }
   ids += "]";
   return Pylon::ValueTextWriter( typeName ).attribute( "qualId", ids ).done();
}

QualIdList parseStrep( std::string_view text, Pylon::ValueType<QualIdList> ) {
   Pylon::ValueTextReader reader( text, typeName );
   QualIdList list = reader.attribute( "qualId", parseIds );
   reader.end();
   return list;
}

std::ostream& operator<<( std::ostream& os, const QualIdList& list ) {
   return os << valueToStrep( list );
}

}  // namespace Halyard
