#include "sim/tcam/SdkCodes.h"

#include "platform/shim/Sdk.h"

namespace Sim {

SdkCodes SdkCodes::fromSdk( Shim::Sdk& sdk ) {
   SdkCodes codes;
   codes.none = sdk.BCM_E_NONE();
   codes.notFound = sdk.BCM_E_NOT_FOUND();
   codes.resource = sdk.BCM_E_RESOURCE();
   codes.notInstalled = sdk.enableEntryToleratedCode();
   codes.ipTypeIpv4Any = static_cast<int>( sdk.bcmFieldIpTypeIpv4Any() );
   codes.ipTypeIpv6 = static_cast<int>( sdk.bcmFieldIpTypeIpv6() );
   return codes;
}

SdkCodes SdkCodes::current() {
   return Shim::sdk_ ? fromSdk( *Shim::sdk_ ) : SdkCodes{};
}

int SdkCodes::of( Status s ) const {
   switch ( s ) {
      case Status::Ok:
         return none;
      case Status::NotFound:
         return notFound;
      case Status::Resource:
         return resource;
      case Status::NotInstalled:
         return notInstalled;
      default:
         return failure;
   }
}

std::optional<IpType> SdkCodes::ipType( bcm_field_IpType_t type ) const {
   const int value = static_cast<int>( type );
   if ( value == ipTypeIpv4Any ) {
      return IpType::Ipv4Any;
   }
   if ( value == ipTypeIpv6 ) {
      return IpType::Ipv6;
   }
   return std::nullopt;
}

}  // namespace Sim
