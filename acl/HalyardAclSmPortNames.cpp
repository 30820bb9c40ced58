#include "acl/HalyardAclSmPortNames.h"

#include "platform/halyard/HalyardPort.h"
#include "platform/pylon/IntfId.h"
#include "platform/pylon/U10.h"

namespace Halyard {

Vesper::String vfpPortName( const HalyardCommonSmData& hcsd, U32 unit, U32 port ) {
   const Pylon::U10 checked( static_cast<S64>( port ) );
   const Pylon::IntfId intf =
       hcsd.halyardPortToIntf( HalyardTypes::HalyardPort( unit, checked.value() ) );
   return Vesper::String( Pylon::valueToStrep( intf ) );
}

}  // namespace Halyard
