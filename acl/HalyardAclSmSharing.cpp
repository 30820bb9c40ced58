// Whether router ACLs are shared across VLANs on this system. Bring-up asks before it takes
// the entry managers; the sharing manager and the shared programming rely on the answers.
#include "acl/HalyardAclSm.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

bool AclHelper::raclSharingCliSupport() const {
   return aclHwStatus_->ingressRaclSharingSupported();
}

// On chips of groups C, D and F a fixed system (no fabric) always shares, whatever the
// hardware status or the configuration say. `chips` names them in the trace.
bool AclHelper::raclSharingForcedByChip( U32 unit, const char* chips ) const {
   if ( hasFabric_ || !( isChipGroupC( unit ) || isChipGroupD( unit ) || isChipGroupF( unit ) ) ) {
      return false;
   }
   VTRACE( 1, " Bypassing racl sharing support for " << chips );
   return true;
}

bool AclHelper::raclSharingSupport() const {
   bool support = raclSharingCliSupport();
   for ( const auto& member : hcsd_->halyardModId() ) {
      if ( raclSharingForcedByChip( member.key(),
                                    "Tomahawk/Tomahawk+/Tomahawk2/Trident2+/Trident3." ) ) {
         support = true;
      }
   }
   return support;
}

bool AclHelper::raclSharingConfig() const {
   bool sharing = aclParamConfig_->ingressRaclSharing();
   for ( const auto& member : hcsd_->halyardModId() ) {
      if ( raclSharingForcedByChip( member.key(), "TomahawkX/T2+/Trident3." ) ) {
         sharing = true;
      }
   }
   return sharing;
}

}  // namespace Halyard
