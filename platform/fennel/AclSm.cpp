#include "platform/fennel/AclSm.h"

#include <utility>

#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Fennel::AclSm" )

namespace Fennel {

namespace {

// Never destroyed: a machine may be made during the exit of the process.
AclSmFactory& registeredFactory() {
   static auto* const factory = new AclSmFactory;
   return *factory;
}

}  // namespace

AclSm::AclSm( const AclSmInputs& inputs ) : inputs_( inputs ) {
   if ( inputs_.aclHelper ) {
      inputs_.aclHelper->fcsdIs( inputs_.fcsd );
      inputs_.aclHelper->intfConfigIs( inputs_.intfConfigCli );
   }
}

AclSm::Ptr AclSm::create( const AclSmInputs& inputs ) {
   const AclSmFactory& factory = registeredFactory();
   Ptr machine;
   if ( factory ) {
      machine = factory( inputs );
   } else {
      VTRACE( 0, "Fennel::AclSm::create: no generic layer registered, the machine drives nothing" );
      machine = new AclSm( inputs );
   }
   VESPER_ASSERT( machine && machine->builtFrom( inputs ) );
   return machine;
}

AclSm::Ptr AclSm::create( FennelCommonSmData::Ptr fcsd, Acl::Config::PtrConst mainConfig,
                          Acl::ParamConfig::PtrConst aclParamConfig,
                          Vesper::Dir::PtrConst intfConfigDir,
                          Acl::IntfConfig::PtrConst intfConfigCli,
                          Vesper::Dir::PtrConst hwConfigDir, Acl::StatusDp::Ptr status,
                          Errdisable::CauseStatus::PtrConst aclCauseStatus,
                          Lag::Input::Config::PtrConst lagInputConfig,
                          FennelHelper::AclHelper::Ptr aclHelper, Vesper::Clock::PtrConst clock,
                          Bridging::Config::PtrConst brConfig,
                          Interface::SubIntfStatusDir::PtrConst subIntfStatusDir,
                          Interface::SubIntfConfigDir::PtrConst subIntfConfigDir ) {
   return create( AclSmInputs{
       std::move( fcsd ), std::move( mainConfig ), std::move( aclParamConfig ),
       std::move( intfConfigDir ), std::move( intfConfigCli ), std::move( hwConfigDir ),
       std::move( status ), std::move( aclCauseStatus ), std::move( lagInputConfig ),
       std::move( aclHelper ), std::move( clock ), std::move( brConfig ),
       std::move( subIntfStatusDir ), std::move( subIntfConfigDir ) } );
}

void aclSmFactoryIs( AclSmFactory factory ) {
   registeredFactory() = std::move( factory );
}

bool aclSmFactoryHas() {
   return static_cast<bool>( registeredFactory() );
}

}  // namespace Fennel
