// What the stages hand each other and how the hits of several groups combine: the VFP source
// class seen by IFP, port classes by direction, action conflicts between groups, egress masks.
#include <functional>
#include <optional>

#include "tests/sim/lookup/LookupFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimLookupTest::Stage" )

namespace SimLookupTest {
namespace {

// Source class bits as a VFP deny and a VFP log set them.
constexpr U32 kClassDrop = 0x08;
constexpr U32 kClassLog = 0x10;

TEST_F( LookupTest, AVfpSourceClassIsWhatIfpMatchesAsSrcClassField ) {
   const U32 mark = acquire( tcamGroupIpAclVfp );
   SDK_CHECK( bcm_field_qualify_L4DstPort( kUnit, mark, 23, 0xffff ) );
   SDK_CHECK( bcm_field_action_add( kUnit, mark, bcmFieldActionClassSourceSet, kClassLog, 0 ) );
   install( mark );
   // The IFP entries that carry the VFP decisions out: only the log bit is set.
   const U32 drop = acquire( tcamGroupIpAcl );
   SDK_CHECK( bcm_field_qualify_SrcClassField( kUnit, drop, kClassDrop, kClassDrop ) );
   SDK_CHECK( bcm_field_action_add( kUnit, drop, bcmFieldActionDrop, 0, 0 ) );
   install( drop );
   const U32 log = acquire( tcamGroupIpAcl );
   SDK_CHECK( bcm_field_qualify_SrcClassField( kUnit, log, kClassLog, kClassLog ) );
   SDK_CHECK( bcm_field_action_add( kUnit, log, bcmFieldActionCopyToCpu, 1, 7 ) );
   install( log );

   SwitchVerdict v = inject( 23 );
   EXPECT_EQ( kClassLog, v.ingress.sourceClass ) << v.text();
   EXPECT_EQ( log, v.ingress.hitIn( tcamGroupIpAcl ) );
   EXPECT_TRUE( v.copyToCpu() );
   EXPECT_EQ( 7u, v.ingress.cpuMatchId );
   EXPECT_TRUE( v.forwarded() );
   EXPECT_EQ( 1u, hits( mark ) );
   EXPECT_EQ( 0u, hits( drop ) );

   v = inject( 80 );
   EXPECT_EQ( 0u, v.ingress.sourceClass ) << v.text();
   EXPECT_FALSE( v.copyToCpu() );
   EXPECT_EQ( 1u, hits( mark ) );
   EXPECT_EQ( 1u, hits( log ) );
}

// Port classes by direction: VFP and IFP see the ingress port's ingress class, EFP the egress
// port's egress class.
struct DirectionCase {
   const char* name;
   TcamGroupAssignment group;
   U32 seen;     // the class the stage sees for a packet from port 1 to port 2
   U32 unseen;   // a class of the same ports that the stage must not see
   bool egress;  // the class is port 2's egress class
};

class PortClassDirection : public LookupTest,
                           public ::testing::WithParamInterface<DirectionCase> {};

TEST_P( PortClassDirection, EachStageSeesTheClassOfItsDirection ) {
   const DirectionCase& c = GetParam();
   SDK_CHECK( bcm_port_class_set( kUnit, 1, bcmPortClassFieldIngress, 0x21 ) );
   SDK_CHECK( bcm_port_class_set( kUnit, 1, bcmPortClassFieldEgress, 0x31 ) );
   SDK_CHECK( bcm_port_class_set( kUnit, 2, bcmPortClassFieldIngress, 0x22 ) );
   SDK_CHECK( bcm_port_class_set( kUnit, 2, bcmPortClassFieldEgress, 0x32 ) );
   U32 back = 0;
   SDK_CHECK( bcm_port_class_get( kUnit, 2, bcmPortClassFieldEgress, &back ) );
   EXPECT_EQ( 0x32u, back );

   const U32 right = acquire( c.group );
   SDK_CHECK( bcm_field_qualify_InterfaceClassPort( kUnit, right, c.seen, 0xff ) );
   install( right );
   // Above it, an entry on a class the stage must not see.
   const U32 wrong = acquire( c.group );
   SDK_CHECK( bcm_field_qualify_InterfaceClassPort( kUnit, wrong, c.unseen, 0xff ) );
   manager( wrong ).setPriorityForEntry( kUnit, wrong, 1000 );
   install( wrong );

   const auto hitOf = [&]( const SwitchVerdict& v ) {
      return c.egress ? v.ingress.hitIn( c.group, 2 ) : v.ingress.hitIn( c.group );
   };
   SwitchVerdict v = inject( 80 );
   EXPECT_EQ( right, hitOf( v ) ) << v.text();
   EXPECT_EQ( 1u, hits( right ) );
   EXPECT_EQ( 0u, hits( wrong ) );

   // A new class on the port takes the packet out of the entry's reach.
   SDK_CHECK( bcm_port_class_set( kUnit, c.egress ? 2 : 1,
                                  c.egress ? bcmPortClassFieldEgress : bcmPortClassFieldIngress,
                                  0x40 ) );
   v = inject( 80 );
   EXPECT_EQ( std::nullopt, hitOf( v ) ) << v.text();
   EXPECT_EQ( 1u, hits( right ) );
}

INSTANTIATE_TEST_SUITE_P(
    Stages, PortClassDirection,
    // IFP groups match ports by bitmap: no key of theirs holds the port class.
    ::testing::Values( DirectionCase{ "Vfp", tcamGroupIpAclVfp, 0x21, 0x31, false },
                       DirectionCase{ "Efp", tcamGroupIpAclEgress, 0x32, 0x22, true } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

// One action family whose hits in two groups conflict, and where the verdict reports it.
struct Family {
   const char* name;
   std::function<bcm_field_action_t()> action;
   std::function<std::optional<U32>( const Verdict& )> read;
   // Two groups of the stage that takes the action, the first of lower priority.
   TcamGroupAssignment low = tcamGroupMacAcl;
   TcamGroupAssignment high = tcamGroupIpAcl;
};

class GroupConflict : public LookupTest, public ::testing::WithParamInterface<Family> {
 protected:
   U32 withAction( TcamGroupAssignment a, U32 param ) {
      const U32 e = acquire( a );
      const bcm_field_action_t action = GetParam().action();
      SDK_CHECK( bcm_field_action_add( kUnit, e, action, param, 0 ) );
      install( e );
      return e;
   }
};

TEST_P( GroupConflict, TheGroupOfHigherPriorityWins ) {
   const Family& f = GetParam();
   // Acquired first, the MAC ACL entry stands in the lower group.
   const U32 low = withAction( f.low, 9 );
   const U32 high = withAction( f.high, 7 );
   SwitchVerdict v = inject( 80 );
   EXPECT_EQ( 7u, f.read( v.ingress ) ) << v.text();
   EXPECT_EQ( 1u, hits( high ) );
   EXPECT_EQ( 1u, hits( low ) );

   manager( high ).removeEntry( kUnit, high );
   v = inject( 80 );
   EXPECT_EQ( 9u, f.read( v.ingress ) ) << v.text();
   EXPECT_EQ( 2u, hits( low ) );
}

INSTANTIATE_TEST_SUITE_P(
    Families, GroupConflict,
    ::testing::Values( Family{ "CpuQueue", [] { return bcmFieldActionCosQCpuNew; },
                               []( const Verdict& v ) { return v.cpuQueue; } },
                       Family{ "InternalPriority", [] { return bcmFieldActionPrioIntNew; },
                               []( const Verdict& v ) { return v.internalPriority; } },
                       Family{ "Mirror", [] { return bcmFieldActionMirrorIngressIndex; },
                               []( const Verdict& v ) { return v.mirror; } },
                       // Only VFP entries set the source class.
                       Family{
                           "SourceClass", [] { return bcmFieldActionClassSourceSet; },
                           []( const Verdict& v ) { return std::optional<U32>( v.sourceClass ); },
                           Halyard::tcamGroupMacAclVfp, tcamGroupIpAclVfp } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

TEST_F( LookupTest, ADropFromTheLowerGroupStillDrops ) {
   const U32 drop = acquire( tcamGroupMacAcl );
   SDK_CHECK( bcm_field_action_add( kUnit, drop, bcmFieldActionDrop, 0, 0 ) );
   install( drop );
   const U32 copy = acquire( tcamGroupIpAcl );
   SDK_CHECK( bcm_field_action_add( kUnit, copy, bcmFieldActionCopyToCpu, 1, 4 ) );
   install( copy );
   const SwitchVerdict v = inject( 80 );
   EXPECT_TRUE( v.dropped() ) << v.text();
   EXPECT_FALSE( v.forwarded() );
   EXPECT_TRUE( v.copyToCpu() );
   EXPECT_EQ( 1u, hits( drop ) );
   EXPECT_EQ( 1u, hits( copy ) );
}

TEST_F( LookupTest, TheEgressMasksOfAllHitsAddUp ) {
   const U32 a = acquire( tcamGroupIpAcl );
   SDK_CHECK( bcm_field_action_ports_add( kUnit, a, bcmFieldActionEgressMask, pbmp( { 3, 4 } ) ) );
   install( a );
   const U32 b = acquire( tcamGroupMacAcl );
   SDK_CHECK( bcm_field_action_ports_add( kUnit, b, bcmFieldActionEgressMask, pbmp( { 4, 6 } ) ) );
   install( b );
   bcm_pbmp_t back;
   SDK_CHECK( bcm_field_action_ports_get( kUnit, b, bcmFieldActionEgressMask, &back ) );
   EXPECT_EQ( pbmp( { 4, 6 } ), back );

   const Verdict v =
       lookup( tcp().ingressPortIs( 1 ).egressPortsIs( PortBitmap{ 2, 3, 4, 5, 6 } ) );
   EXPECT_EQ( ( PortBitmap{ 2, 5 } ), v.egressPorts ) << v.text();
   EXPECT_FALSE( v.dropped );
   EXPECT_EQ( 1u, hits( a ) );
   EXPECT_EQ( 1u, hits( b ) );
}

TEST_F( LookupTest, TheIngressPortsEgressMaskCutsItsDestinations ) {
   SDK_CHECK( bcm_port_modid_egress_set( kUnit, 1, -1, pbmp( { 2, 3 } ) ) );
   bcm_pbmp_t back;
   SDK_CHECK( bcm_port_modid_egress_get( kUnit, 1, 0, &back ) );
   EXPECT_EQ( pbmp( { 2, 3 } ), back );

   const Packet toTwoAndFour = tcp().egressPortsIs( PortBitmap{ 2, 4 } );
   EXPECT_EQ( PortBitmap{ 2 }, lookup( Packet( toTwoAndFour ).ingressPortIs( 1 ) ).egressPorts );
   // Other ingress ports keep their own, full masks.
   EXPECT_EQ( ( PortBitmap{ 2, 4 } ),
              lookup( Packet( toTwoAndFour ).ingressPortIs( 5 ) ).egressPorts );
   EXPECT_FALSE( inject( 80, "Ethernet1", "Ethernet4" ).forwarded() );
   EXPECT_TRUE( inject( 80, "Ethernet1", "Ethernet3" ).forwarded() );
}

}  // namespace
}  // namespace SimLookupTest
