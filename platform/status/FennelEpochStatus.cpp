#include "platform/status/FennelEpochStatus.h"

#include <utility>

namespace Fennel {

namespace {

// Never destroyed: the record may be released at exit only after the type
// records it counts itself in, so it is not released at all.
FennelEpochStatus::Ptr& slot() {
   static auto* const record = new FennelEpochStatus::Ptr( fennelEpochStatusFactory() );
   return *record;
}

}  // namespace

FennelEpochStatus::Ptr fennelEpochStatusFactory() {
   FennelEpochStatus::Ptr status( new FennelEpochStatus );
   status->hasNotificationActiveIs( true );
   return status;
}

FennelEpochStatus::Ptr fennelEpochStatus() {
   return slot();
}

void fennelEpochStatusIs( FennelEpochStatus::Ptr status ) {
   slot() = status ? std::move( status ) : fennelEpochStatusFactory();
}

bool FennelEpochStatus::aclSupported( const Vesper::Name& epochName ) const {
   const bool* supported = aclSupported_.find( epochName );
   return supported && *supported;
}

void FennelEpochStatus::aclSupportedIs( const Vesper::Name& epochName, bool supported ) {
   if ( aclSupported_.set( epochName, supported ) ) {
      notify( &NotifieeConst::onAclSupported, epochName );
   }
}

void FennelEpochStatus::aclSupportedDel( const Vesper::Name& epochName ) {
   if ( aclSupported_.del( epochName ) ) {
      notify( &NotifieeConst::onAclSupported, epochName );
   }
}

}  // namespace Fennel
