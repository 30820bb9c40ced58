#include "platform/fennel/FennelCommonSmData.h"

namespace Fennel {

bool FennelCommonSmData::intf( Pylon::IntfId intf ) const {
   const bool* noAcls = intf_.find( intf );
   return noAcls && *noAcls;
}

void FennelCommonSmData::intfIs( Pylon::IntfId intf, bool noAcls ) {
   if ( intf_.set( intf, noAcls ) ) {
      notify( &NotifieeConst::onIntf, intf );
   }
}

void FennelCommonSmData::intfDel( Pylon::IntfId intf ) {
   if ( intf_.del( intf ) ) {
      notify( &NotifieeConst::onIntf, intf );
   }
}

void FennelCommonSmData::intfDelAll() {
   for ( auto it = intf_.iterator(); auto* node = it.currNodeNonStale(); it.advance() ) {
      const Pylon::IntfId intf = node->key();
      intfDel( intf );
   }
}

FennelCommonSmData::Ptr fennelCommonSmDataFactory() {
   FennelCommonSmData::Ptr data( new FennelCommonSmData );
   data->hasNotificationActiveIs( true );
   return data;
}

}  // namespace Fennel
