// Internal to sim/switch. Sim::ProcessWideInstall: installs a simulated switch's process-wide
// records for its scope and puts back, when the scope ends, those it found: the platform's chip
// table (HalyardCentral::halyardAttributes), the generic layer's epoch status
// (Fennel::fennelEpochStatus) and the fabric device of fab_ioctl. Scopes nest, like
// Shim::SdkInstall.
#pragma once

#include "platform/shim/FabIoctl.h"
#include "platform/status/FennelEpochStatus.h"
#include "platform/tcam/HalyardAttributes.h"
#include "platform/vesper/Ptr.h"

namespace Sim {

class ProcessWideInstall {
 public:
   ProcessWideInstall( Vesper::Ptr<HalyardCentral::HalyardAttributes> attributes,
                       Fennel::FennelEpochStatus::Ptr epochStatus, Shim::FabricDevice& fabric );
   ~ProcessWideInstall();
   ProcessWideInstall( const ProcessWideInstall& ) = delete;
   ProcessWideInstall& operator=( const ProcessWideInstall& ) = delete;

 private:
   Vesper::Ptr<HalyardCentral::HalyardAttributes> previousAttributes_;
   Fennel::FennelEpochStatus::Ptr previousEpochStatus_;
   Shim::FabricDevice* previousFabric_;
};

}  // namespace Sim
