#include "platform/shim/Sdk.h"

namespace Shim {

Sdk* sdk_ = nullptr;

SdkInstall::SdkInstall( Sdk& sdk ) : previous_( sdk_ ) {
   sdk_ = &sdk;
}

SdkInstall::~SdkInstall() {
   sdk_ = previous_;
}

PortLockHold::PortLockHold( int unit ) : unit_( unit ) {
   sdk_->PORT_LOCK( unit_ );
}

PortLockHold::~PortLockHold() {
   sdk_->PORT_UNLOCK( unit_ );
}

}  // namespace Shim
