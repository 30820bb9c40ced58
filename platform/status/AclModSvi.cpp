#include "platform/status/AclModSvi.h"

#include "platform/pylon/ValueHash.h"

namespace HalyardVlanTopo {

namespace {

constexpr std::string_view typeName = "HalyardVlanTopo::AclModSvi";

}  // namespace

U32 AclModSvi::hash() const {
   return Pylon::OneAtATimeHash().addU16( modId_.value() ).addU16( vlanId_.value() ).value();
}

std::string valueToStrep( const AclModSvi& key ) {
   return Pylon::ValueTextWriter( typeName )
       .attribute( "modId", valueToStrep( key.modId() ) )
       .attribute( "vlanId", valueToStrep( key.vlanId() ) )
       .done();
}

AclModSvi parseStrep( std::string_view text, Pylon::ValueType<AclModSvi> ) {
   Pylon::ValueTextReader reader( text, typeName );
   const auto modId = reader.attribute(
       "modId", []( std::string_view raw ) { return strepToValue<Pylon::ModId>( raw ); } );
   const auto vlanId = reader.attribute(
       "vlanId", []( std::string_view raw ) { return strepToValue<Pylon::VlanId>( raw ); } );
   reader.end();
   return AclModSvi( modId, vlanId );
}

std::ostream& operator<<( std::ostream& os, const AclModSvi& key ) {
   return os << valueToStrep( key );
}

}  // namespace HalyardVlanTopo
