#include "sim/switch/ProcessWideInstall.h"

#include <utility>

namespace Sim {

ProcessWideInstall::ProcessWideInstall( Vesper::Ptr<HalyardCentral::HalyardAttributes> attributes,
                                        Fennel::FennelEpochStatus::Ptr epochStatus,
                                        Shim::FabricDevice& fabric )
    : previousAttributes_( HalyardCentral::halyardAttributes() ),
      previousEpochStatus_( Fennel::fennelEpochStatus() ),
      previousFabric_( &Shim::fabricDevice() ) {
   HalyardCentral::halyardAttributesIs( std::move( attributes ) );
   Fennel::fennelEpochStatusIs( std::move( epochStatus ) );
   Shim::fabricDeviceIs( &fabric );
}

ProcessWideInstall::~ProcessWideInstall() {
   // The device found may be the real one, which installing by address puts back as well.
   Shim::fabricDeviceIs( previousFabric_ );
   Fennel::fennelEpochStatusIs( previousEpochStatus_ );
   HalyardCentral::halyardAttributesIs( previousAttributes_ );
}

}  // namespace Sim
