#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/vesper/OwnedCollection.h"

namespace {

using ::testing::ElementsAre;
using Vesper::BackPtr;
using Vesper::Ptr;

class Helper : public Vesper::PtrInterface {};

// A per-unit record built with a back pointer to its owner and a priority.
class UnitData : public Vesper::PtrInterface {
 public:
   UnitData( U32 unit, BackPtr<Helper> aclHelper, U8 priority )
       : unit_( unit ), aclHelper_( aclHelper ), priority_( priority ) {}
   static auto ctorParams() {
      return std::make_tuple( Vesper::ctorParam( "_aclHelper", &UnitData::aclHelper ),
                              Vesper::ctorParam( "_priority", &UnitData::priority ) );
   }
   U32 unit() const { return unit_; }
   BackPtr<Helper> aclHelper() const { return aclHelper_; }
   U8 priority() const { return priority_; }

 private:
   U32 unit_;
   BackPtr<Helper> aclHelper_;
   U8 priority_;
};

// Runs `f`, which must raise NameInUseException, and returns its text.
template <class F>
std::string nameInUseErrorOf( F&& f ) {
   try {
      f();
   } catch ( const Vesper::NameInUseException& e ) {
      return e.what();
   }
   return "no exception";
}

class OwnedCollectionTest : public ::testing::Test {
 protected:
   Helper helper_, otherHelper_;
   Vesper::OwnedCollection<U32, UnitData> units_;
};

TEST_F( OwnedCollectionTest, FindOrCreateBuildsOnceWithNotificationsOn ) {
   auto [made, created] = units_.findOrCreate( 2, BackPtr<Helper>( &helper_ ), U8( 1 ) );
   ASSERT_TRUE( made );
   EXPECT_TRUE( created );
   EXPECT_EQ( made->unit(), 2u );
   EXPECT_TRUE( made->hasNotificationActive() );
   EXPECT_EQ( made->references(), 2u );

   auto [again, createdAgain] = units_.findOrCreate( 2, BackPtr<Helper>( &helper_ ), U8( 1 ) );
   EXPECT_FALSE( createdAgain );
   EXPECT_EQ( again, made );
   EXPECT_EQ( units_.size(), 1u );
   EXPECT_EQ( units_.find( 2 ), made );
   EXPECT_EQ( units_.find( 3 ), nullptr );
}

TEST_F( OwnedCollectionTest, ADifferentConstructorParameterRaisesNameInUse ) {
   const Ptr<UnitData> made = units_.findOrCreate( 0, BackPtr<Helper>( &helper_ ), U8( 1 ) ).member;
   EXPECT_EQ( nameInUseErrorOf(
                  [&] { units_.findOrCreate( 0, BackPtr<Helper>( &otherHelper_ ), U8( 1 ) ); } ),
              "Reinstantiating the pointer interface where constructor parameter attribute "
              "_aclHelper has a different value of " +
                  Vesper::addressText( &otherHelper_ ) + " than the current value of " +
                  Vesper::addressText( &helper_ ) + " not allowed" );
   EXPECT_EQ(
       nameInUseErrorOf( [&] { units_.findOrCreate( 0, BackPtr<Helper>( &helper_ ), U8( 9 ) ); } ),
       "Reinstantiating the pointer interface where constructor parameter attribute "
       "_priority has a different value of 9 than the current value of 1 not allowed" );
   EXPECT_EQ( units_.find( 0 ), made ) << "the standing member is untouched";
   EXPECT_EQ( made->priority(), 1 );
}

TEST_F( OwnedCollectionTest, DelAndDelAllRemoveOneByOneInWalkOrder ) {
   for ( U32 unit : { 1u, 2u, 3u, 4u } ) {
      units_.findOrCreate( unit, BackPtr<Helper>( &helper_ ), U8( 0 ) );
   }
   const Ptr<UnitData> removed = units_.del( 3 );
   ASSERT_TRUE( removed );
   EXPECT_EQ( removed->references(), 1u );
   EXPECT_EQ( units_.del( 3 ), nullptr );
   EXPECT_FALSE( units_.has( 3 ) );

   std::vector<U32> walked, deleted;
   for ( const auto& node : units_ ) {
      walked.push_back( node.key() );
   }
   units_.delAll( [&]( U32 key, const Ptr<UnitData>& member ) {
      deleted.push_back( key );
      EXPECT_EQ( member->unit(), key );
      EXPECT_FALSE( units_.has( key ) ) << "already removed when told";
   } );
   EXPECT_EQ( deleted, walked );
   EXPECT_THAT( deleted, ElementsAre( 4u, 2u, 1u ) ) << "bit-reversed order of 1, 2, 4";
   EXPECT_TRUE( units_.empty() );
}

}  // namespace
