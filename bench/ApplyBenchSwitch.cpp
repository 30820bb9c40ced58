// ApplySwitch and the apply workloads (ApplyBench.h).
#include <algorithm>

#include "bench/ApplyBench.h"
#include "bench/LibraryBench.h"
#include "cli/switch/AclSwitch.h"
#include "fennel/HalyardView.h"
#include "platform/vesper/ActivityLock.h"

namespace HalyardBench {

namespace {

// Passes of one configuration change at most, as the tool allows (AclSwitch::apply).
constexpr U32 kMaxPasses = 4;

HalyardCli::AclSetup parsed( const std::string& text ) {
   return parsedConfig( text, "apply-bench.acl" );
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
   w.profile = grownProfile();
   w.options = grownOptions();
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
   const Halyard::HalyardTcamGroupManager::Ptr groupManager =
       recorder ? recorder->groupManagerOver( switch_->groupManager() )
                : Halyard::HalyardTcamGroupManager::Ptr( switch_->groupManager() );
   wired_ = wireBackEnd( *switch_, groupManager, workload.setup );
}

ApplySwitch::~ApplySwitch() {
   unwire( wired_ );
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
      wired_.machine->runPass();
      ++passes;
   } while ( passes < kMaxPasses && HalyardCli::expansionWaiting( *wired_.machine ) );
   if ( recorder_ ) {
      recorder_->recordingIs( false );
   }
}

void ApplySwitch::checkInstalled() const {
   const auto units = Fennel::aclUnits( *wired_.helper, listKey() );
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
