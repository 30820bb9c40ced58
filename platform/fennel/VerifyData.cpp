#include "platform/fennel/VerifyData.h"

namespace Fennel {

std::ostream& operator<<( std::ostream& os, const VerifyOutput& output ) {
   return os << output.file() << ":" << output.line() << ": " << output.function() << ": "
             << output.message() << " (severity " << output.severity() << ")";
}

void VerifyData::updateCliVerifyOutput( Vesper::String function, Vesper::String message ) {
   cliVerifyOutput_.push_back( { std::move( function ), std::move( message ) } );
   notify( &NotifieeConst::onCliVerifyOutput );
}

void VerifyData::cliVerifyOutputDelAll() {
   if ( cliVerifyOutput_.empty() ) {
      return;
   }
   cliVerifyOutput_.clear();
   notify( &NotifieeConst::onCliVerifyOutput );
}

void VerifyData::verifyOutputIs( VerifyOutput output ) {
   verifyOutput_.push_back( std::move( output ) );
   notify( &NotifieeConst::onVerifyOutput );
}

void VerifyData::verifyOutputDelAll() {
   if ( verifyOutput_.empty() ) {
      return;
   }
   verifyOutput_.clear();
   notify( &NotifieeConst::onVerifyOutput );
}

VerifyData::Ptr verifyDataFactory() {
   VerifyData::Ptr data( new VerifyData );
   data->hasNotificationActiveIs( true );
   return data;
}

}  // namespace Fennel
