#include "platform/halyard/AclRuleUdfData.h"

#include <cstdlib>

#include "platform/vesper/Assert.h"

namespace Halyard {

UdfData AclRuleUdfData::udfData( const QualIdList& list ) const {
   auto it = udfData_.find( list );
   return it == udfData_.end() ? UdfData() : it->second;
}

UdfData AclRuleUdfData::udfDataDel( const QualIdList& list ) {
   auto it = udfData_.find( list );
   if ( it == udfData_.end() ) {
      return UdfData();
   }
   UdfData removed = it->second;
   udfData_.erase( it );
   return removed;
}

std::string valueToStrep( const AclRuleUdfData& data ) {
   std::string members = "{";
   for ( const auto& [list, udf] : data ) {
      members +=
          ( members.size() > 1 ? ", " : "" ) + valueToStrep( list ) + ": " + valueToStrep( udf );
   }
   members += "}";
   return Pylon::ValueTextWriter( "Halyard::AclRuleUdfData" )
       .attribute( "udfData", members )
       .done();
}

AclRuleUdfData parseStrep( std::string_view, Pylon::ValueType<AclRuleUdfData> ) {
   // A collection has no text form to be built from; reaching here is a
   // programming error of the caller.
   VESPER_ASSERT( !"No String constructor for AclRuleUdfData - has collection" );
   std::abort();
}

std::ostream& operator<<( std::ostream& os, const AclRuleUdfData& data ) {
   return os << valueToStrep( data );
}

}  // namespace Halyard
