// The type-direction-feature state machines: the egress class pools, the check of the
// constructor parameters of a standing machine, the machines of mirroring and uRPF exception
// ACLs with their invariants, and the reactors on the managers.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "acl/HalyardAclTypeDirectionFeatureSm.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Exception.h"
#include "platform/vesper/ValueText.h"
#include "tests/acl/bringup/MgmtEntryExpectations.h"

namespace AclBringupTest {
namespace {

using namespace Halyard;
using Sm = HalyardAclTypeDirectionFeatureSm;

const std::string mirroringFeatureInvariant = assertionFailure(
    "feature == aclFeatureMirroring1_ || feature == aclFeatureMirroring2_ || feature == "
    "aclFeatureMirroring3_ || feature == aclFeatureMirroring4_" );
const std::string urpfFeatureInvariant = assertionFailure(
    "feature == aclFeatureUrpfTHxV4Exception_ || feature == aclFeatureUrpfTHxV4V6Exception_" );

std::vector<U8> topFirst( const AclTypeUnitData::Ptr& data ) {
   return data ? data->freeIntfClass().stack().topFirst() : std::vector<U8>{};
}

class TypeDirectionFeatureSmTest : public ::testing::Test {
 protected:
   explicit TypeDirectionFeatureSmTest( std::vector<std::string> kinds = { "trident3",
                                                                           "tomahawk" } )
       : sw_( SwitchLayout{ std::move( kinds ) } ) {
      sw_.hwInit();
   }

   AclHelper& helper() { return *sw_.helper(); }
   Sm::Ptr sm( Acl::AclType type, Acl::AclDirection direction,
               HalyardAclFeature feature = aclFeatureSecurity ) {
      return helper().getHalyardAclTypeDirectionFeatureSm( type, direction, feature );
   }
   U8 groupOf( HalyardAclFeature mirroring ) {
      return static_cast<U8>( helper().mirroringAclEntryManager( mirroring )->groupId() );
   }

   CleanProcessState clean_;
   Vesper::ActivityLockGuard activity_;
   BringupSwitch sw_;
};

// ---- Interface class pools

TEST_F( TypeDirectionFeatureSmTest, EgressMachinesHaveAPoolPerUnitOfTheirTypesClasses ) {
   struct Share {
      Acl::AclType type;
      U8 mask;
      std::vector<U8> topFirst;
   };
   const Share shares[] = { { Acl::ip_, 0x0E, { 14, 12, 10, 8, 6, 4, 2 } },
                            { Acl::mac_, 0x30, { 48, 32, 16 } },
                            { Acl::ipv6_, 0xC0, { 192, 128, 64 } } };
   for ( const Share& share : shares ) {
      SCOPED_TRACE( Vesper::valueText( share.type ) );
      const Sm::Ptr egress = sm( share.type, Acl::out_ );
      ASSERT_TRUE( egress );
      EXPECT_EQ( egress->intfClassMask(), share.mask );
      EXPECT_EQ( egress->unitData().size(), sw_.unitCount() );
      for ( U32 unit = 0; unit < sw_.unitCount(); ++unit ) {
         EXPECT_EQ( topFirst( egress->unitData( unit ) ), share.topFirst ) << "unit " << unit;
      }
      EXPECT_EQ( egress->groupManager(), sw_.groupManager() );
   }
   // Out first: the last class pushed.
   EXPECT_EQ( sm( Acl::ip_, Acl::out_ )->unitData( 1 )->freeIntfClassPop(), 14 );
   EXPECT_EQ( sm( Acl::ip_, Acl::out_ )->unitData( 1 )->freeIntfClass().size(), 6u );
   EXPECT_EQ( sm( Acl::ip_, Acl::out_ )->unitData( 0 )->freeIntfClass().size(), 7u );
}

TEST_F( TypeDirectionFeatureSmTest, IngressMachinesOwnTheWholeClassAndNoPool ) {
   for ( const Acl::AclType type : { Acl::ip_, Acl::mac_, Acl::ipv6_ } ) {
      const Sm::Ptr ingress = sm( type, Acl::in_ );
      ASSERT_TRUE( ingress );
      EXPECT_EQ( ingress->intfClassMask(), 255 );
      EXPECT_TRUE( ingress->unitData().empty() );
      EXPECT_TRUE( ingress->initialized() );
   }
}

TEST_F( TypeDirectionFeatureSmTest, AFeatureMachineOnEgressGetsPoolsOfItsOwn ) {
   helper().setMirroringHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::out_,
                                                          aclFeatureMirroring1 );
   const Sm::Ptr mirroring = sm( Acl::ip_, Acl::out_, aclFeatureMirroring1 );
   const Sm::Ptr security = sm( Acl::ip_, Acl::out_ );
   ASSERT_TRUE( mirroring );
   EXPECT_EQ( mirroring->intfClassMask(), 0x0E );
   EXPECT_EQ( mirroring->unitData().size(), sw_.unitCount() );
   EXPECT_NE( mirroring->unitData( 0 ), security->unitData( 0 ) );
   mirroring->unitData( 0 )->freeIntfClassPop();
   EXPECT_EQ( topFirst( security->unitData( 0 ) ).size(), 7u );
}

// ---- A standing machine and the parameters it was built with

struct ParamCase {
   const char* attr;
   int index;  // 0: aclHelper, 1 to 7: the managers in order
};

class NameInUseTest : public TypeDirectionFeatureSmTest,
                      public ::testing::WithParamInterface<ParamCase> {};

TEST_P( NameInUseTest, AnotherValueOfAParameterIsRefusedWithItsName ) {
   const HalyardAclTypeDirectionFeature key( Acl::ipv6_, Acl::in_, aclFeatureSecurity );
   const Sm::Ptr standing = helper().halyardAclTypeDirectionFeatureSm( key );
   ASSERT_TRUE( standing );
   Vesper::BackPtr<AclHelper> aclHelper = standing->aclHelper();
   Sm::EntryManagerPtr m[7] = { standing->entryManager(),         standing->vfpEntryManager(),
                                standing->vniEntryManager(),      standing->stdEntryManager(),
                                standing->stdVfpEntryManager(),   standing->routerEntryManager(),
                                standing->stdRouterEntryManager() };
   // The same parameters give the standing machine back.
   EXPECT_EQ( helper().halyardAclTypeDirectionFeatureSmIs( key, aclHelper, m[0], m[1], m[2], m[3],
                                                           m[4], m[5], m[6] ),
              standing );

   const AclHelper::Ptr other = sw_.makeHelper();
   const Sm::EntryManagerPtr otherManager = sw_.manager( tcamGroupMacAclEgress );
   std::string held;
   std::string given;
   if ( GetParam().index == 0 ) {
      held = Vesper::addressText( aclHelper.ptr() );
      given = Vesper::addressText( other.ptr() );
      aclHelper = other.ptr();
   } else {
      Sm::EntryManagerPtr& replaced = m[GetParam().index - 1];
      held = Vesper::addressText( replaced.ptr() );
      given = Vesper::addressText( otherManager.ptr() );
      replaced = otherManager;
   }
   try {
      helper().halyardAclTypeDirectionFeatureSmIs( key, aclHelper, m[0], m[1], m[2], m[3], m[4],
                                                   m[5], m[6] );
      FAIL() << "no exception";
   } catch ( const Vesper::NameInUseException& e ) {
      EXPECT_EQ( std::string( e.what() ),
                 std::string( "Reinstantiating the pointer interface where constructor parameter "
                              "attribute " ) +
                     GetParam().attr + " has a different value of " + given +
                     " than the current value of " + held + " not allowed" );
   }
   EXPECT_EQ( helper().halyardAclTypeDirectionFeatureSm( key ), standing );
   EXPECT_EQ( standing->entryManager(), sw_.manager( tcamGroupIp6Acl ) );
}

INSTANTIATE_TEST_SUITE_P(
    Parameters, NameInUseTest,
    ::testing::Values( ParamCase{ "_aclHelper", 0 }, ParamCase{ "_entryManager", 1 },
                       ParamCase{ "_vfpEntryManager", 2 }, ParamCase{ "_vniEntryManager", 3 },
                       ParamCase{ "_stdEntryManager", 4 }, ParamCase{ "_stdVfpEntryManager", 5 },
                       ParamCase{ "_routerEntryManager", 6 },
                       ParamCase{ "_stdRouterEntryManager", 7 } ),
    []( const ::testing::TestParamInfo<ParamCase>& info ) {
       return std::string( info.param.attr + 1 );
    } );

// ---- Mirroring machines

using MirroringSmTest = TypeDirectionFeatureSmTest;

TEST_F( MirroringSmTest, AMachineStandsOnlyBetweenSetAndClear ) {
   EXPECT_FALSE( sm( Acl::mac_, Acl::in_, aclFeatureMirroring2 ) );
   const U8 group = groupOf( aclFeatureMirroring2 );
   EXPECT_EQ( sw_.groupManager()->groupMirroringAclType( group ), groupMirroringAclTypeNone );

   helper().setMirroringHalyardAclTypeDirectionFeatureSm( Acl::mac_, Acl::in_,
                                                          aclFeatureMirroring2 );
   const Sm::Ptr made = sm( Acl::mac_, Acl::in_, aclFeatureMirroring2 );
   ASSERT_TRUE( made );
   EXPECT_EQ( made->entryManager(), helper().mirroringAclGroup2EntryManager() );
   for ( const auto& m : { made->vfpEntryManager(), made->vniEntryManager(),
                           made->stdEntryManager(), made->stdVfpEntryManager(),
                           made->routerEntryManager(), made->stdRouterEntryManager() } ) {
      EXPECT_FALSE( m );
   }
   EXPECT_EQ( sw_.groupManager()->groupMirroringAclType( group ), int( Acl::mac_ ) );
   EXPECT_EQ( helper().halyardAclTypeDirectionFeatureSm().size(), 7u );

   // The same type again, in the other direction: the group's type stands.
   helper().setMirroringHalyardAclTypeDirectionFeatureSm( Acl::mac_, Acl::out_,
                                                          aclFeatureMirroring2 );
   EXPECT_TRUE( sm( Acl::mac_, Acl::out_, aclFeatureMirroring2 ) );
   helper().clearMirroringHalyardAclTypeDirectionFeatureSm( Acl::mac_, Acl::out_,
                                                            aclFeatureMirroring2 );

   helper().clearMirroringHalyardAclTypeDirectionFeatureSm( Acl::mac_, Acl::in_,
                                                            aclFeatureMirroring2 );
   EXPECT_FALSE( sm( Acl::mac_, Acl::in_, aclFeatureMirroring2 ) );
   EXPECT_EQ( sw_.groupManager()->groupMirroringAclType( group ), groupMirroringAclTypeNone );
   EXPECT_EQ( helper().halyardAclTypeDirectionFeatureSm().size(), 6u );

   // Once cleared, the group takes another type.
   helper().setMirroringHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_,
                                                          aclFeatureMirroring2 );
   EXPECT_TRUE( sm( Acl::ip_, Acl::in_, aclFeatureMirroring2 ) );
   EXPECT_EQ( sw_.groupManager()->groupMirroringAclType( group ), int( Acl::ip_ ) );
}

using MirroringSmDeathTest = MirroringSmTest;

TEST_F( MirroringSmDeathTest, AnotherTypeOnAGroupInUseStops ) {
   helper().setMirroringHalyardAclTypeDirectionFeatureSm( Acl::mac_, Acl::in_,
                                                          aclFeatureMirroring2 );
   EXPECT_DEATH( helper().setMirroringHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_,
                                                                        aclFeatureMirroring2 ),
                 assertionFailure( "type == groupAclType" ) );
   EXPECT_FALSE( sm( Acl::ip_, Acl::in_, aclFeatureMirroring2 ) );
}

TEST_F( MirroringSmDeathTest, AFeatureOtherThanMirroringStops ) {
   for ( const HalyardAclFeature f :
         { aclFeatureSecurity, aclFeatureUrpfTHxV4Exception, aclFeatureNone } ) {
      EXPECT_DEATH( helper().setMirroringHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_, f ),
                    mirroringFeatureInvariant );
      EXPECT_DEATH(
          helper().clearMirroringHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_, f ),
          mirroringFeatureInvariant );
   }
}

TEST_F( MirroringSmDeathTest, AFeatureWithoutItsManagerStops ) {
   helper().mirroringAclEntryManagerIs( aclFeatureMirroring4, nullptr );
   EXPECT_DEATH( helper().setMirroringHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_,
                                                                        aclFeatureMirroring4 ),
                 assertionFailure( "mirroringAclEntryManager( feature )" ) );
   EXPECT_DEATH( helper().clearMirroringHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_,
                                                                          aclFeatureMirroring4 ),
                 assertionFailure( "mirroringAclEntryManager( feature )" ) );
}

TEST_F( MirroringSmDeathTest, AGroupThatIsNoMirroringGroupStops ) {
   sw_.groupManager()->groupMirroringAclValidIs( groupOf( aclFeatureMirroring1 ), false );
   EXPECT_DEATH( helper().setMirroringHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_,
                                                                        aclFeatureMirroring1 ),
                 assertionFailure( "gm->groupMirroringAclValid( groupId )" ) );
   EXPECT_DEATH( helper().clearMirroringHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_,
                                                                          aclFeatureMirroring1 ),
                 assertionFailure( "gm->groupMirroringAclValid( groupId )" ) );
}

// ---- uRPF exception machines

using UrpfSmTest = TypeDirectionFeatureSmTest;

TEST_F( UrpfSmTest, TheExceptionManagerServesAsEntryAndRouterManager ) {
   helper().setUrpfHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_,
                                                     aclFeatureUrpfTHxV4Exception );
   helper().setUrpfHalyardAclTypeDirectionFeatureSm( Acl::ipv6_, Acl::in_,
                                                     aclFeatureUrpfTHxV4V6Exception );
   const Sm::Ptr v4 = sm( Acl::ip_, Acl::in_, aclFeatureUrpfTHxV4Exception );
   const Sm::Ptr v6 = sm( Acl::ipv6_, Acl::in_, aclFeatureUrpfTHxV4V6Exception );
   ASSERT_TRUE( v4 );
   ASSERT_TRUE( v6 );
   EXPECT_EQ( v4->entryManager(), helper().urpfTHxV4ExceptionAclGroupEntryManager() );
   EXPECT_EQ( v4->routerEntryManager(), v4->entryManager() );
   EXPECT_EQ( v6->entryManager(), helper().urpfTHxV4V6ExceptionAclGroupEntryManager() );
   EXPECT_EQ( v6->routerEntryManager(), v6->entryManager() );
   for ( const Sm::Ptr& s : { v4, v6 } ) {
      EXPECT_FALSE( s->vfpEntryManager() );
      EXPECT_FALSE( s->vniEntryManager() );
      EXPECT_FALSE( s->stdEntryManager() );
      EXPECT_FALSE( s->stdVfpEntryManager() );
      EXPECT_FALSE( s->stdRouterEntryManager() );
   }
   helper().clearUrpfHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_,
                                                       aclFeatureUrpfTHxV4Exception );
   EXPECT_FALSE( sm( Acl::ip_, Acl::in_, aclFeatureUrpfTHxV4Exception ) );
   EXPECT_TRUE( sm( Acl::ipv6_, Acl::in_, aclFeatureUrpfTHxV4V6Exception ) );
}

using UrpfSmDeathTest = UrpfSmTest;

TEST_F( UrpfSmDeathTest, TheIpv4ExceptionGroupTakesIpv4Only ) {
   EXPECT_DEATH( helper().setUrpfHalyardAclTypeDirectionFeatureSm( Acl::ipv6_, Acl::in_,
                                                                   aclFeatureUrpfTHxV4Exception ),
                 assertionFailure( "type == Acl::ip_" ) );
   EXPECT_FALSE( sm( Acl::ipv6_, Acl::in_, aclFeatureUrpfTHxV4Exception ) );
}

TEST_F( UrpfSmDeathTest, AFeatureOtherThanUrpfStops ) {
   for ( const HalyardAclFeature f : { aclFeatureSecurity, aclFeatureMirroring1 } ) {
      EXPECT_DEATH( helper().setUrpfHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_, f ),
                    urpfFeatureInvariant );
      EXPECT_DEATH( helper().clearUrpfHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_, f ),
                    urpfFeatureInvariant );
   }
}

// ---- Reactors: each notice of a watched manager reaches the machine, and through it the
// helper, which asks for a deferred update pass when an ACL waits on the unit.

class ReactorTest : public TypeDirectionFeatureSmTest {
 protected:
   ReactorTest() {
      helper().dirtyIs( true );
      helper().unitDirtyIs( 0, true );
      helper().unitDirtyIs( 1, true );
   }
   // Whether the notices so far asked for a deferred update; forgets the request.
   bool deferred() {
      const bool asked = helper().needsDeferredUpdate();
      helper().needsDeferredUpdateIs( false );
      return asked;
   }
};

TEST_F( ReactorTest, AnExhaustionNoticeOfAWatchedManagerReachesTheHelper ) {
   for ( const TcamGroupAssignment a :
         { tcamGroupIpAcl, tcamGroupIpAclVfp, tcamGroupIpAclVni, tcamGroupRouterAcl,
           tcamGroupIp6StdAcl, tcamGroupIp6StdAclVfp, tcamGroupIp6StdAclRouterEgress } ) {
      sw_.manager( a )->exhaustedIs( 0, true );
      EXPECT_TRUE( deferred() ) << a;
      sw_.manager( a )->exhaustedIs( 0, false );
      EXPECT_TRUE( deferred() ) << a;
   }
   sw_.groupManager()->rangeCheckersExhaustedIs( 1, true );
   EXPECT_TRUE( deferred() );
}

TEST_F( ReactorTest, NothingWaitsOnACleanUnit ) {
   helper().unitDirtyIs( 0, false );
   sw_.manager( tcamGroupIpAcl )->exhaustedIs( 0, true );
   EXPECT_FALSE( deferred() );
   sw_.manager( tcamGroupIpAcl )->exhaustedIs( 1, true );
   EXPECT_TRUE( deferred() );
}

// A machine whose every manager is full on the unit has no room to offer; the VNI manager
// takes no part in the test.
TEST_F( ReactorTest, NoRoomWhenEveryManagerOfTheMachineIsFull ) {
   sw_.manager( tcamGroupMacAclVfp )->exhaustedIs( 0, true );
   ASSERT_TRUE( deferred() );
   sw_.manager( tcamGroupMacAcl )->exhaustedIs( 0, true );
   EXPECT_FALSE( deferred() );
   sw_.manager( tcamGroupMacAclVfp )->exhaustedIs( 0, false );
   EXPECT_TRUE( deferred() );
}

TEST_F( ReactorTest, AMachineStopsWatchingWhenDroppedOrSwitchedOff ) {
   helper().setUrpfHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_,
                                                     aclFeatureUrpfTHxV4Exception );
   const auto urpf = sw_.manager( tcamGroupUrpfTHxV4ExceptionAcl );
   // Its one manager serves it as plain and as router manager: full, it offers no room.
   urpf->exhaustedIs( 0, true );
   EXPECT_FALSE( deferred() );
   urpf->exhaustedIs( 0, false );
   EXPECT_TRUE( deferred() );
   helper().clearUrpfHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_,
                                                       aclFeatureUrpfTHxV4Exception );
   urpf->exhaustedIs( 0, true );
   urpf->exhaustedIs( 0, false );
   EXPECT_FALSE( deferred() );

   // With notifications off the machine of the MAC egress manager hears nothing; on again, it
   // does.
   const Sm::Ptr macOut = sm( Acl::mac_, Acl::out_ );
   macOut->hasNotificationActiveIs( false );
   sw_.manager( tcamGroupMacAclEgress )->exhaustedIs( 0, true );
   EXPECT_FALSE( deferred() );
   macOut->hasNotificationActiveIs( true );
   sw_.manager( tcamGroupMacAclEgress )->exhaustedIs( 0, false );
   EXPECT_TRUE( deferred() );
}

}  // namespace
}  // namespace AclBringupTest
