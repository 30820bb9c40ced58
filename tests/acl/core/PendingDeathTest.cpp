// Operations whose behaviour is not written yet stop the process and name themselves; none
// answers as if it had done its work.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "acl/HalyardAclSm.h"
#include "platform/acl/RuleConfig.h"
#include "platform/vesper/ActivityLock.h"
#include "tests/acl/SecurityMachineTable.h"
#include "tests/support/AgentSwitch.h"
#include "tests/support/ChipReadback.h"

namespace AclCoreTest {
namespace {

using namespace Halyard;

struct PendingCase {
   std::string operation;
   std::function<void( AclHelper&, const Fennel::AclData::Ptr& )> call;
};

void PrintTo( const PendingCase& c, std::ostream* os ) {
   *os << c.operation;
}

class PendingDeathTest : public ::testing::TestWithParam<PendingCase> {
 protected:
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { "trident2" } ),
                                 HalyardTest::notBroughtUp() };
   const AclHelper::Ptr helper_ = sw_.makeHelper();
   const Fennel::AclData::Ptr aclData_ =
       Fennel::aclDataFactory( Fennel::AclKey( "acl", Acl::ip_, Acl::in_ ) );
};

TEST_P( PendingDeathTest, StopsNamingTheOperation ) {
   const PendingCase& c = GetParam();
   EXPECT_DEATH( c.call( *helper_, aclData_ ),
                 "Assertion `AclHelper::" + c.operation + " is not available yet' failed" );
}

const PendingCase pendingCases[] = {
    { "blockIntf",
      []( AclHelper& h, const Fennel::AclData::Ptr& ) {
         h.blockIntf( Pylon::IntfId::ethernet( 1 ), true, 0 );
      } },
    { "sharedAclDataForVlansSupported",
      []( AclHelper& h, const Fennel::AclData::Ptr& a ) {
         h.sharedAclDataForVlansSupported( a->key() );
      } },
    { "addIntfToSharedAcl",
      []( AclHelper& h, const Fennel::AclData::Ptr& ) {
         const auto shared = Fennel::aclDataFactory( Fennel::AclKey(
             "shared", Acl::ip_, Acl::in_, false,
             Fennel::AclVlanIdOrNone( Fennel::AclVlanIdOrNone::vlanSharingId() ) ) );
         h.addIntfToAcl( Fennel::IntfPairKey( Pylon::IntfId::vlan( Pylon::VlanId( 10 ) ), {} ),
                         shared, nullptr );
      } },
    { "verifyAclGeneral",
      []( AclHelper& h, const Fennel::AclData::Ptr& a ) { h.verifyAclGeneral( a ); } },
    { "showSharedRaclData",
      []( AclHelper& h, const Fennel::AclData::Ptr& ) { h.showSharedRaclData( 1, 0 ); } },
};

INSTANTIATE_TEST_SUITE_P( Operations, PendingDeathTest, ::testing::ValuesIn( pendingCases ),
                          []( const auto& info ) { return info.param.operation; } );

}  // namespace
}  // namespace AclCoreTest
