#include "platform/wiring/AgentRecords.h"

#include <utility>

namespace {

// Every record here is born the same way: built, then notifications on.
template <class T>
Vesper::Ptr<T> activated( T* record ) {
   Vesper::Ptr<T> ptr( record );
   ptr->hasNotificationActiveIs( true );
   return ptr;
}

}  // namespace

namespace Errdisable {

CauseStatus::Ptr causeStatusFactory() {
   return activated( new CauseStatus );
}

}  // namespace Errdisable

namespace Lag::Input {

Config::Ptr configFactory() {
   return activated( new Config );
}

const std::vector<Pylon::IntfId>& Config::member( Pylon::IntfId portChannel ) const {
   static const std::vector<Pylon::IntfId> none;
   const auto it = member_.find( portChannel );
   return it == member_.end() ? none : it->second;
}

void Config::memberIs( Pylon::IntfId portChannel, std::vector<Pylon::IntfId> members ) {
   if ( members.empty() ) {
      member_.erase( portChannel );
   } else {
      member_[portChannel] = std::move( members );
   }
}

}  // namespace Lag::Input

namespace Bridging {

Config::Ptr configFactory() {
   return activated( new Config );
}

}  // namespace Bridging

namespace Interface {

SubIntfStatusDir::Ptr subIntfStatusDirFactory( Vesper::Name name ) {
   return activated( new SubIntfStatusDir( std::move( name ) ) );
}

SubIntfConfigDir::Ptr subIntfConfigDirFactory( Vesper::Name name ) {
   return activated( new SubIntfConfigDir( std::move( name ) ) );
}

}  // namespace Interface
