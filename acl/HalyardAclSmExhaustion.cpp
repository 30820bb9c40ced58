// TCAM exhaustion: an ACL that found no room stays dirty on its unit; when a manager of its
// kind has room again the generic layer is asked for a deferred update pass, which reapplies
// the dirty ACLs. A notice may come from several machines for one change; asking twice is
// harmless.
#include "acl/HalyardAclSm.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

void AclHelper::handleTcamExhaustion( U32 unit ) {
   if ( !unitDirty( unit ) ) {
      return;
   }
   VTRACE( 1, "Unit: " << unit << " Scheduling ACL update because TCAMs are available" );
   needsDeferredUpdateIs( true );
}

}  // namespace Halyard
