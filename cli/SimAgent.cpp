#include "cli/SimAgent.h"

#include "platform/vesper/Clock.h"
#include "platform/vesper/Dir.h"
#include "platform/wiring/AgentRecords.h"

namespace HalyardCli {

SimAgent::SimAgent( const Sim::SwitchProfile& profile )
    : switch_( profile ),
      config_( Acl::configFactory() ),
      paramConfig_( Acl::paramConfigFactory() ),
      intfConfig_( Acl::intfConfigFactory() ),
      fcsd_( Fennel::fennelCommonSmDataFactory() ) {
   helper_ = Halyard::aclHelperFactory(
       switch_.vlanTopoSliceStatus(), switch_.vlanTopoBlockedStatus(), switch_.hcsd(),
       switch_.groupManager(), config_, paramConfig_, switch_.statusDp(), switch_.aclHwStatus(),
       switch_.l3SliceAgentStatus(), switch_.l3IntfStatus(), switch_.hasFabric() );
   entity_ = Halyard::aclSmEntityFactory();
   entity_->aclSmIs( fcsd_, config_, paramConfig_, Vesper::dirFactory( "intfConfig" ), intfConfig_,
                     Vesper::dirFactory( "hwConfig" ), switch_.statusDp(),
                     Errdisable::causeStatusFactory(), switch_.lagInputConfig(), helper_,
                     Vesper::clockFactory(), Bridging::configFactory(),
                     Interface::subIntfStatusDirFactory( "subIntfStatus" ),
                     Interface::subIntfConfigDirFactory( "subIntfConfig" ) );
}

SimAgent::~SimAgent() {
   // The machine refers to the helper, and the helper to the switch's records: drop them in
   // that order while the switch still stands.
   if ( entity_ ) {
      entity_->aclSmDel();
   }
   entity_ = nullptr;
   helper_ = nullptr;
}

void SimAgent::hwInit() {
   helper_->hwInit();
}

}  // namespace HalyardCli
