// Fennel::AclSm: built from fourteen inputs through the registered factory,
// compared by those inputs, and wiring the back-end with what it reads.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <typeinfo>
#include <vector>

#include "platform/fennel/AclSm.h"
#include "platform/vesper/Trace.h"
#include "tests/platform/fennel/FennelTestSupport.h"

namespace {

using Fennel::AclSm;
using Fennel::AclSmInputs;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The inputs of a machine, each a fresh object.
AclSmInputs freshInputs() {
   return AclSmInputs{ Fennel::fennelCommonSmDataFactory(),
                       Acl::configFactory(),
                       Acl::paramConfigFactory(),
                       Vesper::dirFactory( "intfConfig" ),
                       Acl::intfConfigFactory(),
                       Vesper::dirFactory( "hwConfig" ),
                       Acl::statusDpFactory(),
                       Errdisable::causeStatusFactory(),
                       Lag::Input::configFactory(),
                       FennelTest::StubBackEnd::create(),
                       Vesper::clockFactory(),
                       Bridging::configFactory(),
                       Interface::subIntfStatusDirFactory( "subIntfStatus" ),
                       Interface::subIntfConfigDirFactory( "subIntfConfig" ) };
}

// Whether the machine is of exactly the class T (not a subclass).
template <class T>
bool isExactly( const AclSm::Ptr& sm ) {
   const AclSm& machine = *sm;
   return typeid( machine ) == typeid( T );
}

// A driving machine of the kind the generic layer registers.
class DrivingAclSm : public AclSm {
 public:
   explicit DrivingAclSm( const AclSmInputs& inputs ) : AclSm( inputs ) {}
};

class AclSmTest : public FennelTest::ActivityTest {
 protected:
   ~AclSmTest() override { Fennel::aclSmFactoryIs( nullptr ); }

   AclSmInputs inputs_ = freshInputs();
};

TEST_F( AclSmTest, WithoutAFactoryTheMachineIsPlainAndBuiltFromItsInputs ) {
   EXPECT_FALSE( Fennel::aclSmFactoryHas() );
   Vesper::TraceCapture capture( "Fennel::AclSm" );
   const AclSm::Ptr sm = AclSm::create( inputs_ );
   ASSERT_TRUE( sm );
   EXPECT_THAT( capture.lines(),
                ElementsAre( "Fennel::AclSm::create: no generic layer registered, the machine "
                             "drives nothing" ) );
   EXPECT_TRUE( isExactly<AclSm>( sm ) );
   EXPECT_TRUE( sm->builtFrom( inputs_ ) );
   EXPECT_EQ( inputs_, sm->inputs() );
}

TEST_F( AclSmTest, ARegisteredFactoryBuildsTheMachineUntilItIsRemoved ) {
   std::vector<const AclSmInputs*> calls;
   Fennel::aclSmFactoryIs( [&calls]( const AclSmInputs& inputs ) {
      calls.push_back( &inputs );
      return AclSm::Ptr( new DrivingAclSm( inputs ) );
   } );
   EXPECT_TRUE( Fennel::aclSmFactoryHas() );
   Vesper::TraceCapture capture( "Fennel::AclSm" );
   const AclSm::Ptr driving = AclSm::create( inputs_ );
   EXPECT_TRUE( isExactly<DrivingAclSm>( driving ) );
   EXPECT_TRUE( driving->builtFrom( inputs_ ) );
   EXPECT_EQ( 1u, calls.size() );
   EXPECT_THAT( capture.lines(), IsEmpty() );

   Fennel::aclSmFactoryIs( nullptr );
   EXPECT_FALSE( Fennel::aclSmFactoryHas() );
   const AclSm::Ptr plain = AclSm::create( inputs_ );
   EXPECT_TRUE( isExactly<AclSm>( plain ) );
   EXPECT_EQ( 1u, calls.size() );
}

TEST_F( AclSmTest, AFactoryThatBuildsFromOtherInputsStopsTheProcess ) {
   GTEST_FLAG_SET( death_test_style, "threadsafe" );
   const AclSmInputs other = freshInputs();
   Fennel::aclSmFactoryIs(
       [other]( const AclSmInputs& ) { return AclSm::Ptr( new DrivingAclSm( other ) ); } );
   EXPECT_DEATH( AclSm::create( inputs_ ), "machine && machine->builtFrom\\( inputs \\)" );
   Fennel::aclSmFactoryIs( []( const AclSmInputs& ) { return AclSm::Ptr(); } );
   EXPECT_DEATH( AclSm::create( inputs_ ), "machine && machine->builtFrom\\( inputs \\)" );
}

TEST_F( AclSmTest, BuildingAMachineHandsTheBackEndTheGenericInputsItReads ) {
   const auto& helper = inputs_.aclHelper;
   EXPECT_FALSE( helper->fcsd() );
   EXPECT_FALSE( helper->intfConfig() );
   const AclSm::Ptr sm = AclSm::create( inputs_ );
   EXPECT_EQ( inputs_.fcsd, helper->fcsd() );
   EXPECT_EQ( inputs_.intfConfigCli, helper->intfConfig() );

   // A replacement machine rewires the helper with its own inputs.
   AclSmInputs next = inputs_;
   next.intfConfigCli = Acl::intfConfigFactory();
   const AclSm::Ptr replacement = AclSm::create( next );
   EXPECT_EQ( next.intfConfigCli, helper->intfConfig() );
}

}  // namespace
