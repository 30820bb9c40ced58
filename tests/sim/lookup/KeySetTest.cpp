// Key sets: each group of the switch takes the fields of its stage and key only, and answers
// any other with the SDK's parameter error, leaving the entry as it was; the same field in a
// group whose key holds it is taken.
#include <algorithm>
#include <functional>
#include <ostream>
#include <string>

#include "sim/sdk/SdkValues.h"
#include "tests/sim/lookup/LookupFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimLookupTest::KeySets" )

namespace SimLookupTest {
namespace {

using Halyard::tcamGroupIp6Acl;
using Halyard::tcamGroupIp6AclVfp;
using Halyard::tcamGroupMacAclEgress;

// An IPv6 address (or mask) of sixteen equal bytes.
struct Ip6 {
   explicit Ip6( U8 fill ) { std::fill( std::begin( bytes ), std::end( bytes ), fill ); }
   bcm_ip6_t bytes;
};

// One write into an entry, and the read that shows whether the entry holds it.
struct Field {
   const char* name;
   std::function<int( U32 entry )> write;
   std::function<bool( ChipModel&, U32 entry )> held;
};

Field qual( const char* name, std::function<int( U32 )> write, QualId q ) {
   return Field{ name, std::move( write ),
                 [q]( ChipModel& c, U32 e ) { return c.qualifier( e, q ).has_value(); } };
}

Field action( const char* name, std::function<bcm_field_action_t()> a, ActionId id ) {
   return Field{
       name, [a]( U32 e ) { return SDK_TRACE_RV( bcm_field_action_add( kUnit, e, a(), 1, 0 ) ); },
       [id]( ChipModel& c, U32 e ) { return c.action( e, id ).has_value(); } };
}

const Field kInPorts{
    "InPorts",
    []( U32 e ) {
       return SDK_TRACE_RV( bcm_field_qualify_InPorts( kUnit, e, PBMP_ALL( 0 ), PBMP_ALL( 0 ) ) );
    },
    []( ChipModel& c, U32 e ) { return c.inPorts( e ).has_value(); } };
const Field kOutPort = qual(
    "OutPort",
    []( U32 e ) { return SDK_TRACE_RV( bcm_field_qualify_OutPort( kUnit, e, 3, 0xff ) ); },
    QualId::OutPort );
const Field kSrcIp = qual(
    "SrcIp",
    []( U32 e ) { return SDK_TRACE_RV( bcm_field_qualify_SrcIp( kUnit, e, 0x0a000001, ~0u ) ); },
    QualId::SrcIp );
const Field kSrcIp6 = qual(
    "SrcIp6",
    []( U32 e ) {
       return SDK_TRACE_RV(
           bcm_field_qualify_SrcIp6( kUnit, e, Ip6( 1 ).bytes, Ip6( 0xff ).bytes ) );
    },
    QualId::SrcIp6 );
const Field kDstIp6High = qual(
    "DstIp6High",
    []( U32 e ) {
       return SDK_TRACE_RV(
           bcm_field_qualify_DstIp6High( kUnit, e, Ip6( 2 ).bytes, Ip6( 0xff ).bytes ) );
    },
    QualId::DstIp6High );
const Field kSrcMac = qual(
    "SrcMac",
    []( U32 e ) {
       const bcm_mac_t mac = { 2, 0, 0, 0, 0, 1 };
       const bcm_mac_t all = { 0xff, 0xff, 0xff, 0xff, 0xff, 0xff };
       return SDK_TRACE_RV( bcm_field_qualify_SrcMac( kUnit, e, mac, all ) );
    },
    QualId::SrcMac );
const Field kClassSourceSet = action(
    "ClassSourceSet", [] { return bcmFieldActionClassSourceSet; }, ActionId::ClassSourceSet );
const Field kCopyToCpu = action(
    "CopyToCpu", [] { return bcmFieldActionCopyToCpu; }, ActionId::CopyToCpu );
const Field kDrop = action(
    "Drop", [] { return bcmFieldActionDrop; }, ActionId::Drop );

struct KeyCase {
   const char* name;
   TcamGroupAssignment group;
   Field field;
   bool taken;
};
void PrintTo( const KeyCase& c, std::ostream* os ) {
   *os << c.name;
}

class KeySet : public LookupTest, public ::testing::WithParamInterface<KeyCase> {};

TEST_P( KeySet, AFieldOutsideTheGroupsKeyIsAParameterError ) {
   const KeyCase& c = GetParam();
   const U32 e = acquire( c.group );
   const int rc = c.field.write( e );
   EXPECT_EQ( c.taken ? SdkValues::kNone : SdkValues::kParam, rc );
   EXPECT_EQ( c.taken, c.field.held( sw_.chip( kUnit ), e ) );
}

INSTANTIATE_TEST_SUITE_P(
    Groups, KeySet,
    ::testing::Values( KeyCase{ "InPortsInIfp", tcamGroupIpAcl, kInPorts, true },
                       KeyCase{ "InPortsInVfp", tcamGroupIpAclVfp, kInPorts, true },
                       KeyCase{ "InPortsInEfp", tcamGroupIpAclEgress, kInPorts, false },
                       KeyCase{ "OutPortInEfp", tcamGroupIpAclEgress, kOutPort, true },
                       KeyCase{ "OutPortInIfp", tcamGroupIpAcl, kOutPort, false },
                       KeyCase{ "ClassSourceSetInVfp", tcamGroupIpAclVfp, kClassSourceSet, true },
                       KeyCase{ "ClassSourceSetInIfp", tcamGroupIpAcl, kClassSourceSet, false },
                       KeyCase{ "CopyToCpuInEfp", tcamGroupIpAclEgress, kCopyToCpu, false },
                       KeyCase{ "DropInEfp", tcamGroupIpAclEgress, kDrop, true },
                       KeyCase{ "DropInVfp", tcamGroupIpAclVfp, kDrop, false },
                       KeyCase{ "Ipv6AddressInIpv6Group", tcamGroupIp6Acl, kSrcIp6, true },
                       KeyCase{ "Ipv6AddressInIpv4Group", tcamGroupIpAcl, kSrcIp6, false },
                       KeyCase{ "WholeIpv6AddressInVfp", tcamGroupIp6AclVfp, kSrcIp6, false },
                       KeyCase{ "UpperIpv6AddressInVfp", tcamGroupIp6AclVfp, kDstIp6High, true },
                       KeyCase{ "Ipv4AddressInIpv6Group", tcamGroupIp6Acl, kSrcIp, false },
                       KeyCase{ "Ipv4AddressInMacGroup", tcamGroupMacAcl, kSrcIp, false },
                       KeyCase{ "MacAddressInMacGroup", tcamGroupMacAclEgress, kSrcMac, true },
                       KeyCase{ "MacAddressInIpv4Group", tcamGroupIpAcl, kSrcMac, false } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

// Range checkers belong to ingress IP keys: elsewhere the manager's attach answers a refusal
// (not the resource code, which would say the entry has no room left), and the entry holds no
// checker.
TEST_F( LookupTest, RangeCheckersOnlyInIngressIpGroups ) {
   auto ip = sw_.groupManager()->unboundedEntryManager( tcamGroupIpAcl );
   const U32 id = ip->getRangeChecker(
       kUnit, Halyard::RangeCheckerDesc( 1024, 2047, Halyard::rangeCheckerDstPort ) );
   ASSERT_NE( 0u, id );
   const U32 ingress = acquire( tcamGroupIpAcl );
   EXPECT_EQ( SdkValues::kNone, ip->attachRangeChecker( kUnit, ingress, id ) );
   EXPECT_EQ( 1u, sw_.chip( kUnit ).rangeChecks( ingress )->size() );
   for ( TcamGroupAssignment other :
         { tcamGroupIpAclEgress, tcamGroupMacAcl, tcamGroupIpAclVfp } ) {
      const U32 e = acquire( other );
      const int rc = ip->attachRangeChecker( kUnit, e, id );
      EXPECT_LT( rc, 0 ) << other;
      EXPECT_NE( SdkValues::kResource, rc ) << other;
      EXPECT_TRUE( sw_.chip( kUnit ).rangeChecks( e )->empty() ) << other;
   }
}

}  // namespace
}  // namespace SimLookupTest
