// ApplySwitch and the apply workloads (ApplyBench.h).
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "bench/ApplyBench.h"
#include "bench/LibraryBench.h"
#include "cli/switch/AclSwitch.h"
#include "fennel/HalyardView.h"
#include "platform/fennel/FennelCommonSmData.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Clock.h"
#include "platform/vesper/Dir.h"
#include "platform/wiring/AgentRecords.h"
#include "sim/catalog/ChipCatalog.h"

namespace HalyardBench {

namespace {

// Passes of one configuration change at most, as the tool allows (AclSwitch::apply).
constexpr U32 kMaxPasses = 4;

// The scaling switch: one Tomahawk-class unit whose IFP has 24 slices of 4,096 narrow entries
// (49,152 wide), room for 10,000 rules of acl1_10k with their ranges as blocks.
constexpr U32 kSliceEntries = 4096;
constexpr U32 kIfpSlices = 24;
constexpr U32 kPorts = 8;

[[noreturn]] void fail( const std::string& why ) {
   std::fprintf( stderr, "halyard-bench: %s\n", why.c_str() );
   std::abort();
}

HalyardCli::AclSetup parsed( const std::string& text ) {
   try {
      return HalyardCli::parseConfig( text, "apply-bench.acl" );
   } catch ( const HalyardCli::ConfigError& e ) {
      fail( std::string( "configuration refused: " ) + e.what() );
   }
}

Sim::ChipKind scalingKind() {
   Sim::ChipKind kind = *Sim::chipKindByName( "tomahawk" );
   kind.name = "tomahawk-apply-bench";
   kind.description = "Tomahawk-class, IFP grown for the apply scaling runs";
   // A chip type no catalog kind has, so that its row joins the chip table.
   kind.chipInfo =
       HalyardCentral::ChipInfo( kind.chipInfo.familyCode(), 0xbe01u, kind.chipInfo.revisionId() );
   kind.ifp.narrowEntries.assign( kIfpSlices, kSliceEntries );
   return kind;
}

Sim::SwitchProfile scalingProfile() {
   Sim::SwitchProfile profile;
   profile.nameIs( "apply-bench" );
   Sim::UnitDef def;
   def.unit = 0;
   def.kind = "tomahawk";
   def.module = 1;
   profile.unitIs( def );
   for ( U32 port = 1; port <= kPorts; ++port ) {
      profile.ethernetIs( port, 0, port );
   }
   return profile;
}

Fennel::AclKey listKey() {
   return Fennel::AclKey( kListName, Acl::AclType::ip, Acl::AclDirection::in, false,
                          Fennel::AclVlanIdOrNone( 0 ) );
}

}  // namespace

ApplyWorkload classBenchWorkload( const std::string& set ) {
   const auto& rules = classBenchRules( set );
   ApplyWorkload w;
   w.setup = parsed( classBenchConfig( rules, rules.size(), true ) +
                     "interface Ethernet25\n   ip access-group " + kListName + " in\n" );
   w.rules = rules.size();
   w.units = { 0, 1 };
   w.profile = Sim::defaultProfile();
   return w;
}

ApplyWorkload scalingWorkload( std::size_t count ) {
   // acl1_10k holds 9,761 rules: the run of 10,000 takes them all.
   const auto& rules = classBenchRules( "acl1_10k" );
   count = std::min( count, rules.size() );
   ApplyWorkload w;
   // Single ports only (a range is left out): with ranges, the 64 range checkers run out
   // within the first thousand rules and the list is applied again with every range as
   // blocks, so that a rule of a long list costs several times the entries of one of a short
   // list, and the figure would measure the workload rather than the cost per rule.
   w.setup = parsed( classBenchConfig( rules, count, false ) );
   w.rules = count;
   w.units = { 0 };
   w.profile = scalingProfile();
   w.options.unitKinds.emplace( 0, scalingKind() );
   return w;
}

struct ApplySwitch::Wiring {
   Wiring() { Fennel::registerGenericAclSm(); }
   ~Wiring() { Fennel::aclSmFactoryIs( {} ); }
   Vesper::ActivityLockGuard activityLock;
};

ApplySwitch::ApplySwitch( const ApplyWorkload& workload, Sim::CallRecorder* recorder )
    : workload_( workload ), recorder_( recorder ), wiring_( std::make_unique<Wiring>() ) {
   switch_ = std::make_unique<Sim::SimSwitch>( workload.profile, workload.options );
   Sim::SimSwitch& sw = *switch_;
   const Halyard::HalyardTcamGroupManager::Ptr groupManager =
       recorder ? recorder->groupManagerOver( sw.groupManager() )
                : Halyard::HalyardTcamGroupManager::Ptr( sw.groupManager() );
   const HalyardCli::AclSetup& setup = workload.setup;
   helper_ = Halyard::aclHelperFactory( sw.vlanTopoSliceStatus(), sw.vlanTopoBlockedStatus(),
                                        sw.hcsd(), groupManager, setup.config, setup.paramConfig,
                                        sw.statusDp(), sw.aclHwStatus(), sw.l3SliceAgentStatus(),
                                        sw.l3IntfStatus(), sw.hasFabric() );
   entity_ = Halyard::aclSmEntityFactory();
   entity_->aclSmIs( Fennel::fennelCommonSmDataFactory(), setup.config, setup.paramConfig,
                     Vesper::dirFactory( "intfConfig" ), setup.intfConfig,
                     Vesper::dirFactory( "hwConfig" ), sw.statusDp(),
                     Errdisable::causeStatusFactory(), sw.lagInputConfig(), helper_,
                     Vesper::clockFactory(), Bridging::configFactory(),
                     Interface::subIntfStatusDirFactory( "subIntfStatus" ),
                     Interface::subIntfConfigDirFactory( "subIntfConfig" ) );
   machine_ = Fennel::GenericAclSm::from( entity_->aclSm() );
   if ( !machine_ ) {
      fail( "the agent's entity built no generic machine" );
   }
   helper_->hwInit();
   machine_->markStarted();
}

ApplySwitch::~ApplySwitch() {
   // The machine refers to the helper, and the helper to the switch's records.
   machine_ = nullptr;
   entity_->aclSmDel();
   entity_ = nullptr;
   helper_ = nullptr;
}

void ApplySwitch::apply() {
   std::unique_ptr<Shim::Sdk> recordingSdk;
   std::unique_ptr<Shim::SdkInstall> install;
   if ( recorder_ ) {
      recordingSdk = recorder_->sdkOver( switch_->sdk() );
      install = std::make_unique<Shim::SdkInstall>( *recordingSdk );
      recorder_->recordingIs( true );
   }
   U32 passes = 0;
   do {
      machine_->runPass();
      ++passes;
   } while ( passes < kMaxPasses && HalyardCli::expansionWaiting( *machine_ ) );
   if ( recorder_ ) {
      recorder_->recordingIs( false );
   }
}

void ApplySwitch::checkInstalled() const {
   const auto units = Fennel::aclUnits( *helper_, listKey() );
   for ( U32 unit : workload_.units ) {
      bool installed = false;
      for ( const Fennel::AclUnitView& u : units ) {
         installed = installed || ( u.unit == unit && u.installed && !u.dirty );
      }
      if ( !installed ) {
         fail( "the list does not stand installed on unit " + std::to_string( unit ) );
      }
   }
}

Sim::ReplayTarget ApplySwitch::replayTarget( const Sim::CallLog& log ) {
   return Sim::replayTargetOf( log, switch_->sdk(), *switch_->groupManager() );
}

}  // namespace HalyardBench
