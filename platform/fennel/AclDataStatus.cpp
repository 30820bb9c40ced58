#include "platform/fennel/AclDataStatus.h"

namespace Fennel {

void AclDataStatus::createErrorIs( AclCreateError error ) {
   if ( error == createError_ ) {
      return;
   }
   createError_ = error;
   notify( &NotifieeConst::onCreateError );
}

AclDataStatus::Ptr aclDataStatusFactory( AclKey key ) {
   AclDataStatus::Ptr status( new AclDataStatus( std::move( key ) ) );
   status->hasNotificationActiveIs( true );
   return status;
}

}  // namespace Fennel
