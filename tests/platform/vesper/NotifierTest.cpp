// The reactor pattern, shown on a small observed class and a state machine
// that watches it, the way the library's machines watch their inputs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Vesper::Ptr;

// An observed class with one attribute `color` and one collection `member`.
class Sample : public Vesper::NotifierBase<> {
 public:
   class NotifieeConst : public Vesper::NotifieeBase<Sample> {
    public:
      virtual void onColor() {}
      virtual void onMember( U32 ) {}
   };

   static Ptr<Sample> sampleFactory() {
      Ptr<Sample> sample( new Sample );
      sample->hasNotificationActiveIs( true );
      return sample;
   }

   U32 color() const { return color_; }
   void colorIs( U32 color ) {
      if ( color == color_ ) {
         return;
      }
      color_ = color;
      notify( &NotifieeConst::onColor );
   }

   U32 member( U32 key ) const {
      const U32* value = members_.find( key );
      return value ? *value : 0;
   }
   void memberIs( U32 key, U32 value ) {
      if ( members_.set( key, value ) ) {
         notify( &NotifieeConst::onMember, key );
      }
   }
   void memberDel( U32 key ) {
      if ( members_.del( key ) ) {
         notify( &NotifieeConst::onMember, key );
      }
   }
   bool memberHas( U32 key ) const { return members_.has( key ); }
   void memberNotify( U32 key ) const { notify( &NotifieeConst::onMember, key ); }

 private:
   Sample() = default;
   U32 color_ = 0;
   Vesper::HashMap2018<U32, U32> members_;
};

// The machine records what its handlers saw; a test may set an action to run
// once, inside the next color handler.
class SampleSm {
 public:
   std::vector<std::string> log;
   std::function<void()> duringColor;

   void handleColor( const std::string& who, U32 color ) {
      log.push_back( who + " color " + std::to_string( color ) );
      if ( auto action = std::exchange( duringColor, nullptr ) ) {
         action();
      }
   }
   void handleMember( const std::string& who, U32 key, bool present ) {
      log.push_back( who + " member " + std::to_string( key ) + ( present ? " set" : " gone" ) );
   }
};

// The reactor: built with the observed object and a back pointer to the machine.
class VesperSample : public Sample::NotifieeConst {
 public:
   VesperSample( std::string name, const Ptr<Sample>& sample, SampleSm* sm )
       : name_( std::move( name ) ), sm_( sm ) {
      notifierIs( sample );
   }
   void onColor() override { sm_->handleColor( name_, notifier()->color() ); }
   void onMember( U32 key ) override {
      sm_->handleMember( name_, key, notifier()->memberHas( key ) );
   }

 private:
   std::string name_;
   SampleSm* sm_;
};

class NotifierTest : public ::testing::Test {
 protected:
   Vesper::ActivityLockGuard activity_;  // reactors run on the activity thread
   SampleSm sm_;
   Ptr<Sample> sample_ = Sample::sampleFactory();
};

TEST_F( NotifierTest, SetterDeliversImmediatelyOnRealChangesOnly ) {
   VesperSample reactor( "r", sample_, &sm_ );
   EXPECT_EQ( sample_->notifieeList()->size(), 1u );
   sample_->colorIs( 3 );
   EXPECT_THAT( sm_.log, ElementsAre( "r color 3" ) ) << "delivered in the setter";
   sample_->colorIs( 3 );
   EXPECT_THAT( sm_.log, ElementsAre( "r color 3" ) ) << "no change, no notification";
   EXPECT_EQ( sample_->color(), 3u );
}

TEST_F( NotifierTest, MembersNotifyWithTheirKey ) {
   VesperSample reactor( "r", sample_, &sm_ );
   sample_->memberIs( 7, 1 );
   sample_->memberIs( 7, 1 );
   sample_->memberIs( 7, 2 );
   sample_->memberDel( 7 );
   sample_->memberDel( 7 );
   sample_->memberNotify( 9 );
   EXPECT_THAT( sm_.log, ElementsAre( "r member 7 set", "r member 7 set", "r member 7 gone",
                                      "r member 9 gone" ) );
}

TEST_F( NotifierTest, NothingIsDeliveredWhileNotificationsAreOff ) {
   VesperSample reactor( "r", sample_, &sm_ );
   sample_->hasNotificationActiveIs( false );
   sample_->colorIs( 1 );
   EXPECT_THAT( sm_.log, IsEmpty() );
   EXPECT_EQ( sample_->color(), 1u ) << "the change itself happens";
   sample_->hasNotificationActiveIs( true );
   sample_->colorIs( 2 );
   EXPECT_THAT( sm_.log, ElementsAre( "r color 2" ) );
}

TEST_F( NotifierTest, AllReactorsHearInOrderOfRegistration ) {
   VesperSample a( "a", sample_, &sm_ );
   VesperSample b( "b", sample_, &sm_ );
   sample_->colorIs( 5 );
   EXPECT_THAT( sm_.log, ElementsAre( "a color 5", "b color 5" ) );
   EXPECT_EQ( sample_->references(), 3u ) << "each reactor counts its notifier";
}

TEST_F( NotifierTest, AReactorDeletedDuringDeliveryIsNotCalled ) {
   auto a = std::make_unique<VesperSample>( "a", sample_, &sm_ );
   auto b = std::make_unique<VesperSample>( "b", sample_, &sm_ );
   auto c = std::make_unique<VesperSample>( "c", sample_, &sm_ );
   sm_.duringColor = [&] {
      b.reset();  // a later reactor
      a.reset();  // the reactor being called
   };
   sample_->colorIs( 1 );
   EXPECT_THAT( sm_.log, ElementsAre( "a color 1", "c color 1" ) );
   EXPECT_EQ( sample_->notifieeList()->size(), 1u );
   sample_->colorIs( 2 );
   EXPECT_THAT( sm_.log, ElementsAre( "a color 1", "c color 1", "c color 2" ) );
}

TEST_F( NotifierTest, AReactorReRegisteredDuringDeliveryHearsFromTheNextOne ) {
   Ptr<Sample> other = Sample::sampleFactory();
   VesperSample a( "a", sample_, &sm_ );
   VesperSample b( "b", other, &sm_ );
   sm_.duringColor = [&] {
      b.notifierIs( sample_ );  // joins the list being walked
      a.notifierIs( other );    // leaves it, and comes back
      a.notifierIs( sample_ );
   };
   sample_->colorIs( 1 );
   EXPECT_THAT( sm_.log, ElementsAre( "a color 1" ) ) << "nobody is called twice or too early";
   sample_->colorIs( 2 );
   EXPECT_THAT( sm_.log, ElementsAre( "a color 1", "b color 2", "a color 2" ) );
}

TEST_F( NotifierTest, TheNotifierLivesUntilTheDeliveryEnds ) {
   auto a = std::make_unique<VesperSample>( "a", sample_, &sm_ );
   auto b = std::make_unique<VesperSample>( "b", sample_, &sm_ );
   Sample* raw = sample_.ptr();
   sample_ = nullptr;  // only the reactors hold it now
   sm_.duringColor = [&] {
      a.reset();
      b.reset();  // the last counted pointers go
   };
   raw->colorIs( 4 );
   EXPECT_THAT( sm_.log, ElementsAre( "a color 4" ) );
}

}  // namespace
