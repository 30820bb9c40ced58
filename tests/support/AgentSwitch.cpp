#include "tests/support/AgentSwitch.h"

#include <cstdio>
#include <cstdlib>

#include "platform/vesper/Clock.h"
#include "platform/vesper/Dir.h"
#include "platform/wiring/AgentRecords.h"

namespace HalyardTest {

AgentSwitch::AgentSwitch( const Sim::SwitchProfile& profile, const AgentOptions& options )
    : switch_( profile, options.sim ),
      config_( Acl::configFactory() ),
      paramConfig_( Acl::paramConfigFactory() ),
      intfConfig_( Acl::intfConfigFactory() ),
      fcsd_( Fennel::fennelCommonSmDataFactory() ),
      helper_( makeHelper() ) {
   if ( options.aclSm ) {
      entity_ = Halyard::aclSmEntityFactory();
      entity_->aclSmIs( fcsd_, config_, paramConfig_, Vesper::dirFactory( "intfConfig" ),
                        intfConfig_, Vesper::dirFactory( "hwConfig" ), switch_.statusDp(),
                        Errdisable::causeStatusFactory(), switch_.lagInputConfig(), helper_,
                        Vesper::clockFactory(), Bridging::configFactory(),
                        Interface::subIntfStatusDirFactory( "subIntfStatus" ),
                        Interface::subIntfConfigDirFactory( "subIntfConfig" ) );
   }
   if ( options.hwInit ) {
      helper_->hwInit();
   }
}

AgentSwitch::~AgentSwitch() {
   if ( entity_ ) {
      entity_->aclSmDel();
   }
   entity_ = nullptr;
   helper_ = nullptr;
}

Halyard::AclHelper::Ptr AgentSwitch::makeHelper( bool hasFabric ) const {
   return Halyard::aclHelperFactory(
       switch_.vlanTopoSliceStatus(), switch_.vlanTopoBlockedStatus(), switch_.hcsd(),
       switch_.groupManager(), config_, paramConfig_, switch_.statusDp(), switch_.aclHwStatus(),
       switch_.l3SliceAgentStatus(), switch_.l3IntfStatus(), hasFabric );
}

Sim::SimBoundedTcamEntryManager& AgentSwitch::boundedManager(
    Halyard::TcamGroupAssignment a ) const {
   auto manager =
       Vesper::ptrDynamicCast<Sim::SimBoundedTcamEntryManager>( groupManager()->entryManager( a ) );
   if ( !manager ) {
      std::fprintf( stderr, "group %u is no bounded group of this switch\n", unsigned( a ) );
      std::abort();
   }
   return *manager;
}

}  // namespace HalyardTest
