// Port classes and the port-table bit that makes a port take its class from the port
// table's group id.
#include <iomanip>

#include "acl/HalyardAclSm.h"
#include "acl/HalyardAclTypeDirectionFeatureSm.h"
#include "platform/shim/SdkCall.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

void AclHelper::doSetPortClass( Acl::AclType aclType, Acl::AclDirection direction, U32 unit,
                                U32 port, U8 intfClass, HalyardAclFeature feature ) {
   VTRACE( 1, "Setting interface class 0x" << std::hex << std::setw( 2 ) << std::setfill( '0' )
                                           << U32( intfClass ) << std::dec << " on port ( " << port
                                           << " )" );
   const bcm_port_class_t pclass =
       direction != Acl::in() ? bcmPortClassFieldEgress : bcmPortClassFieldIngress;
   const TypeDirectionFeatureSmPtr sm =
       getHalyardAclTypeDirectionFeatureSm( aclType, direction, feature );
   VESPER_ASSERT( sm );
   const U32 mask = sm->intfClassMask();
   U32 ic = 0;
   SDK_CHECK_SPINDLE( bcm_port_class_get( unit, port, pclass, &ic ) );
   // Only this type's bits change: the classes of the other types on the port stay.
   ic = intfClass | ( ic & ~mask );
   SDK_CHECK_SPINDLE( bcm_port_class_set( unit, port, pclass, ic ) );
}

void AclHelper::handleHalyardIntfToPort( Pylon::IntfId intf ) {
   if ( !hcsd_->halyardIntfToPortHas( intf ) ) {
      VTRACE( 0, " Interface " << intf << " not present in halyardIntfToPort" );
      return;
   }
   const HalyardTypes::HalyardPort sp = hcsd_->halyardIntfToPort( intf );
   // These chips take the class from the port itself.
   if ( isChipGroupF( sp.unit() ) ) {
      return;
   }
   SDK_NO_CHECK_SPINDLE(
       PORT_LOCK_INTERNAL_NO_CHK( sp.unit(), setPortTabUsePortTableGroupId( sp ) ) );
   if ( !isChipGroupC( sp.unit() ) ) {
      SDK_NO_CHECK_SPINDLE(
          PORT_LOCK_INTERNAL_NO_CHK( sp.unit(), setLPortTabUsePortTableGroupId( sp ) ) );
   }
}

// A row is written back only when it was read: a cleared row written over a row that could
// not be read would wipe the port's other fields.
int setPortTabUsePortTableGroupId( HalyardTypes::HalyardPort sp ) {
   const int unit = static_cast<int>( sp.unit() );
   const int port = static_cast<int>( sp.port() );
   port_tab_entry_s row{};
   const int rc = soc_mem_read( unit, PORT_TABm, MEM_BLOCK_ANY, port, &row );
   if ( rc < 0 ) {
      return rc;
   }
   soc_mem_field32_set( unit, PORT_TABm, &row, USE_PORT_TABLE_GROUP_IDf, 1 );
   return soc_mem_write( unit, PORT_TABm, MEM_BLOCK_ALL, port, &row );
}

int setLPortTabUsePortTableGroupId( HalyardTypes::HalyardPort sp ) {
   const int unit = static_cast<int>( sp.unit() );
   const int port = static_cast<int>( sp.port() );
   lport_tab_entry_s row{};
   soc_mem_lock( unit, LPORT_TABm );
   int rc = soc_mem_read( unit, LPORT_TABm, MEM_BLOCK_ANY, port, &row );
   if ( rc >= 0 ) {
      soc_mem_field32_set( unit, LPORT_TABm, &row, USE_PORT_TABLE_GROUP_IDf, 1 );
      rc = soc_mem_write( unit, LPORT_TABm, MEM_BLOCK_ALL, port, &row );
   }
   soc_mem_unlock( unit, LPORT_TABm );
   return rc;
}

}  // namespace Halyard
