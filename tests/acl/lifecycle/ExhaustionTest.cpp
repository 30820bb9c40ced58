// Living with a full TCAM: an ACL that does not fit waits, dirty on its unit with the unit's
// error published; room freed elsewhere reaches the back-end as the manager's notification and
// becomes a deferred update request, and the pass that follows installs the ACL. Compression
// of all groups runs before each commit batch and after each teardown, manager by manager in a
// fixed order.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "platform/vesper/ActivityLock.h"
#include "tests/support/DrivenAcl.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"

namespace AclLifecycleTest {

using namespace HalyardTest;
namespace {

using Halyard::HalyardUnboundedTcamEntryManager;
using HalyardTest::intfOf;

TEST( ExhaustionTest, AnAclThatDoesNotFitWaitsUntilRoomBringsADeferredUpdate ) {
   HalyardTest::CleanProcessState process;
   Vesper::ActivityLockGuard activity;
   HalyardTest::AgentOptions options;
   options.sim.groupCapacities[Halyard::tcamGroupMacAclEgress] = 4;
   HalyardTest::AgentSwitch sw( HalyardTest::SwitchLayout( { "trident3" } ), options );
   Halyard::AclHelper& helper = *sw.helper();
   const Vesper::Name chip = sw.sim().hcsd()->halyardModId( 0 ).chipName();

   DrivenAcl first( sw, "first", Acl::mac_, Acl::out_ );
   first.bound( intfOf( 0, 1 ) );
   ASSERT_EQ( Fennel::aclCreateSuccess,
              first.applied( { macFromHost( Acl::deny_, 1 ), macAny( Acl::permit_ ) } ) );
   DrivenAcl second( sw, "second", Acl::mac_, Acl::out_ );
   second.bound( intfOf( 0, 2 ) );
   const std::vector<Rule> rules = { macFromHost( Acl::deny_, 2 ), macFromHost( Acl::deny_, 3 ),
                                     macAny( Acl::permit_ ) };
   EXPECT_EQ( Fennel::aclCreateNoEntries, second.applied( rules ) );
   EXPECT_TRUE( second.common( 0 )->dirty() );
   EXPECT_FALSE( second.common( 0 )->installed() );
   EXPECT_TRUE( helper.unitDirty( 0 ) );
   EXPECT_EQ( Fennel::aclCreateNoEntries, helper.unitError( chip ) );
   EXPECT_FALSE( helper.needsDeferredUpdate() );
   const auto out = [&]( U32 port, U8 host ) {
      return sw.sim().inject( intfName( 0, 3 ), macPacket( host ), intfName( 0, port ) );
   };
   EXPECT_TRUE( out( 2, 2 ).forwarded() );

   // The first ACL goes: its entries free the group, whose manager tells the machines.
   first.removed();
   EXPECT_TRUE( helper.needsDeferredUpdate() );
   ASSERT_EQ( Fennel::aclCreateSuccess, second.reapplied() );
   EXPECT_TRUE( second.common( 0 )->installed() );
   for ( U8 host = 1; host <= 4; ++host ) {
      SCOPED_TRACE( int( host ) );
      const Sim::SwitchVerdict v = out( 2, host );
      EXPECT_EQ( v.forwarded(), host != 2 && host != 3 );
      EXPECT_EQ( second.ruleHit( v ), host == 2 ? 0u : host == 3 ? 1u : 2u );
   }
}

// A manager that forwards every operation to a manager of the switch and tells a test of
// each compressEntries, with the name under which the helper holds it.
class CompressRecorder : public HalyardUnboundedTcamEntryManager {
 public:
   using Hook = std::function<void( const std::string&, U32 )>;
   CompressRecorder( Ptr inner, std::string name, Hook hook )
       : HalyardUnboundedTcamEntryManager( inner->groupManager().ptr(), inner->groupId(),
                                           inner->groupName(), inner->groupPriority() ),
         inner_( std::move( inner ) ),
         name_( std::move( name ) ),
         hook_( std::move( hook ) ) {}

   void compressEntries( U32 unit ) override {
      hook_( name_, unit );
      inner_->compressEntries( unit );
   }
   U32 entriesAvailable( U32 unit ) const override { return inner_->entriesAvailable( unit ); }
   U32 entriesInUse( U32 unit ) const override { return inner_->entriesInUse( unit ); }
   void enableEntry( U32 unit, U32 entry, bool enable, int rc ) override {
      inner_->enableEntry( unit, entry, enable, rc );
   }
   int installEntry( U32 unit, U32 entry ) override { return inner_->installEntry( unit, entry ); }
   int removeEntry( U32 unit, U32 entry ) override { return inner_->removeEntry( unit, entry ); }
   U64 hitsForEntry( U32 unit, U32 entry ) const override {
      return inner_->hitsForEntry( unit, entry );
   }
   int setPriorityForEntry( U32 unit, U32 entry, U32 priority ) override {
      return inner_->setPriorityForEntry( unit, entry, priority );
   }
   void addInPortsForEntry( U32 unit, U32 entry, const bcm_pbmp_t& data,
                            const bcm_pbmp_t& mask ) override {
      inner_->addInPortsForEntry( unit, entry, data, mask );
   }
   void setTcamEntryBcmPbmpPermanent( U32 unit, U32 entry, bool permanent ) override {
      inner_->setTcamEntryBcmPbmpPermanent( unit, entry, permanent );
   }
   bcm_pbmp_t tcamEntryBcmPbmp( U32 unit, U32 entry ) const override {
      return inner_->tcamEntryBcmPbmp( unit, entry );
   }
   U32 getRangeChecker( U32 unit, const Halyard::RangeCheckerDesc& desc ) override {
      return inner_->getRangeChecker( unit, desc );
   }
   int attachRangeChecker( U32 unit, U32 entry, U32 id ) override {
      return inner_->attachRangeChecker( unit, entry, id );
   }
   void releaseRangeChecker( U32 unit, const Halyard::RangeCheckerDesc& desc ) override {
      inner_->releaseRangeChecker( unit, desc );
   }
   Halyard::QualIdList getAclUdf( U32 unit, int type, U32 proto, Halyard::UdfOffsetBase base,
                                  U8 offset, U8 length ) override {
      return inner_->getAclUdf( unit, type, proto, base, offset, length );
   }
   void releaseAclUdf( U32 unit, int type, U32 proto, Halyard::UdfOffsetBase base, U8 offset,
                       U8 length ) override {
      inner_->releaseAclUdf( unit, type, proto, base, offset, length );
   }
   int getIpType( U32 unit, U32 entry ) const override { return inner_->getIpType( unit, entry ); }
   void qualifyIpType( U32 unit, U32 entry, bcm_field_IpType_t type ) override {
      inner_->qualifyIpType( unit, entry, type );
   }
   U32 getEntry( U32 unit, const Vesper::String& description ) override {
      return inner_->getEntry( unit, description );
   }
   void releaseEntry( U32 unit, U32 entry ) override { inner_->releaseEntry( unit, entry ); }

 private:
   const Ptr inner_;
   const std::string name_;
   const Hook hook_;
};

// The managers of the helper that compressAllGroups packs, in its order.
#define HALYARD_COMPRESSED_MANAGERS( X )  \
   X( ipAclEntryManager )                 \
   X( ipAclVfpEntryManager )              \
   X( ipAclVniEntryManager )              \
   X( ipAclEgressEntryManager )           \
   X( macAclEntryManager )                \
   X( macAclVfpEntryManager )             \
   X( macAclEgressEntryManager )          \
   X( routerAclEntryManager )             \
   X( ip6AclEntryManager )                \
   X( ip6AclVniEntryManager )             \
   X( ip6RouterAclEntryManager )          \
   X( ip6AclVfpEntryManager )             \
   X( ip6StdAclVfpEntryManager )          \
   X( ip6StdAclEntryManager )             \
   X( ip6AclEgressEntryManager )          \
   X( ip6StdAclPortEgressEntryManager )   \
   X( ip6StdAclRouterEgressEntryManager ) \
   X( ip6RouterAclEgressEntryManager )    \
   X( routerAclEgressEntryManager )       \
   X( mirroringAclGroup1EntryManager )    \
   X( mirroringAclGroup2EntryManager )    \
   X( mirroringAclGroup3EntryManager )    \
   X( mirroringAclGroup4EntryManager )

// The order of one compression of one unit: each manager once, the IPv6 VFP one twice in a row.
std::vector<std::string> oneRound() {
   std::vector<std::string> names;
#define HALYARD_NAME( name ) names.push_back( #name );
   HALYARD_COMPRESSED_MANAGERS( HALYARD_NAME )
#undef HALYARD_NAME
   const auto vfp6 = std::find( names.begin(), names.end(), "ip6AclVfpEntryManager" );
   names.insert( vfp6, "ip6AclVfpEntryManager" );
   return names;
}

TEST( CompressionTest, AllGroupsArePackedBeforeCommitAndAfterTeardownInAFixedOrder ) {
   HalyardTest::CleanProcessState process;
   Vesper::ActivityLockGuard activity;
   HalyardTest::AgentSwitch sw( HalyardTest::SwitchLayout( { "trident3", "trident3" } ) );
   Halyard::AclHelper& helper = *sw.helper();
   DrivenAcl acl( sw, "c", Acl::mac_, Acl::in_ );
   acl.bound( intfOf( 0, 1 ) );
   // Slices aside: giving them back is what compression itself does.
   const std::string bringUp = poolsText( sw, false );

   // Per call: the unit, the manager, and what stood when it was called.
   struct Call {
      U32 unit;
      std::string name;
      bool installed;
      std::string pools;
   };
   std::vector<Call> calls;
   const auto hook = [&]( const std::string& name, U32 unit ) {
      const Halyard::AclCommonUnitData::Ptr common = acl.common( 0 );
      calls.push_back( { unit, name, common && common->installed(),
                         calls.empty() ? poolsText( sw, false ) : "" } );
   };
#define HALYARD_WRAP( name )                               \
   helper.name##Is( HalyardUnboundedTcamEntryManager::Ptr( \
       new CompressRecorder( helper.name(), #name, hook ) ) );
   HALYARD_COMPRESSED_MANAGERS( HALYARD_WRAP )
#undef HALYARD_WRAP

   const auto namesOf = [&]( U32 unit ) {
      std::vector<std::string> names;
      for ( const Call& c : calls ) {
         if ( c.unit == unit ) {
            names.push_back( c.name );
         }
      }
      return names;
   };
   ASSERT_EQ( Fennel::aclCreateSuccess,
              acl.applied( { macFromHost( Acl::deny_, 1 ), macAny( Acl::permit_ ) } ) );
   for ( const U32 unit : sw.units() ) {
      EXPECT_EQ( oneRound(), namesOf( unit ) ) << unit;
   }
   for ( const Call& c : calls ) {
      EXPECT_FALSE( c.installed ) << c.name;
   }

   calls.clear();
   sw.helper()->destroyAcl( acl.data() );
   for ( const U32 unit : sw.units() ) {
      EXPECT_EQ( oneRound(), namesOf( unit ) ) << unit;
   }
   // Compression comes after every unit gave everything back.
   ASSERT_FALSE( calls.empty() );
   EXPECT_EQ( bringUp, calls.front().pools );
}

}  // namespace
}  // namespace AclLifecycleTest
