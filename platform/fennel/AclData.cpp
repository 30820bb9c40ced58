#include "platform/fennel/AclData.h"

namespace Fennel {

bool AclData::activeIntf( Pylon::IntfId intf ) const {
   const bool* active = activeIntf_.find( intf );
   return active && *active;
}

namespace {

bool sameMembers( const AclData::ActiveIntfMap& a, const AclData::ActiveIntfMap& b ) {
   if ( a.size() != b.size() ) {
      return false;
   }
   for ( const auto& member : a ) {
      const bool* other = b.find( member.key() );
      if ( !other || *other != member.value() ) {
         return false;
      }
   }
   return true;
}

}  // namespace

bool operator==( const AclData& a, const AclData& b ) {
   return a.key_ == b.key_ && a.aclPriority_ == b.aclPriority_ && a.aclVersion_ == b.aclVersion_ &&
          a.aclConfig_ == b.aclConfig_ && a.installed_ == b.installed_ &&
          a.deferClassIdUpdate_ == b.deferClassIdUpdate_ &&
          sameMembers( a.activeIntf_, b.activeIntf_ );
}

AclData::Ptr aclDataFactory( AclKey key, U32 aclPriority ) {
   AclData::Ptr data( new AclData( std::move( key ), aclPriority ) );
   data->hasNotificationActiveIs( true );
   return data;
}

}  // namespace Fennel
