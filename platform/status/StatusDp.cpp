#include "platform/status/StatusDp.h"

namespace Acl {

StatusDp::Ptr statusDpFactory() {
   StatusDp::Ptr status( new StatusDp );
   status->hasNotificationActiveIs( true );
   return status;
}

TcamStatus::Ptr StatusDp::tcamStatusIs( const Vesper::Name& name ) {
   auto [member, created] = tcamStatus_.findOrCreate( name );
   if ( created ) {
      notify( &NotifieeConst::onTcamStatus, name );
   }
   return member;
}

TcamStatus::Ptr StatusDp::tcamStatusDel( const Vesper::Name& name ) {
   TcamStatus::Ptr removed = tcamStatus_.del( name );
   if ( removed ) {
      notify( &NotifieeConst::onTcamStatus, name );
   }
   return removed;
}

void StatusDp::tcamStatusDelAll() {
   tcamStatus_.delAll( [this]( const Vesper::Name& name, const TcamStatus::Ptr& ) {
      notify( &NotifieeConst::onTcamStatus, name );
   } );
}

}  // namespace Acl
