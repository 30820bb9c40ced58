// Shared pieces of the tests of the TCAM interfaces and the status records.
//
// The manager stand-ins hold only what the abstract classes keep themselves
// (records, notifications, back pointers); every operation of the closed
// classes fails the test if called, since these tests are not about them.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/tcam/HalyardTcamGroupManager.h"
#include "platform/vesper/ActivityLock.h"

namespace TcamTest {

// What reactors heard, one line per notification, in order.
struct EventLog {
   std::vector<std::string> lines;

   template <class... Parts>
   void add( const Parts&... parts ) {
      std::ostringstream line;
      ( line << ... << parts );
      lines.push_back( line.str() );
   }
   // The lines so far, then forgets them.
   std::vector<std::string> take() { return std::exchange( lines, {} ); }
};

inline void unexpectedCall( const char* operation ) {
   ADD_FAILURE() << operation << " is not part of what this test exercises";
}

class InertGroupManager : public Halyard::HalyardTcamGroupManager {
 public:
   static Vesper::Ptr<InertGroupManager> create() {
      Vesper::Ptr<InertGroupManager> gm( new InertGroupManager );
      gm->hasNotificationActiveIs( true );
      return gm;
   }

   Halyard::HalyardBoundedTcamEntryManager::Ptr entryManager(
       Halyard::TcamGroupAssignment ) const override {
      unexpectedCall( "entryManager" );
      return nullptr;
   }
   Halyard::HalyardUnboundedTcamEntryManager::Ptr unboundedEntryManager(
       Halyard::TcamGroupAssignment ) const override {
      unexpectedCall( "unboundedEntryManager" );
      return nullptr;
   }
   bool allocateEtherTypeClassId( U32, U16, U8 ) override { return unexpected(); }
   bool allocateIpProtocolClassId( U32, U16, U8 ) override { return unexpected(); }
   bool allocateL4SrcPortClassId( U32, U16, U8 ) override { return unexpected(); }
   bool allocateL4DstPortClassId( U32, U16, U8 ) override { return unexpected(); }
   bool allocateDstIpClassId( U32, const Pylon::IpAddrWithFullMask&, U64 ) override {
      return unexpected();
   }
   bool allocateDstIp6ClassId( U32, const Pylon::Ip6AddrWithFullMask&, U64 ) override {
      return unexpected();
   }

 private:
   InertGroupManager() = default;
   static bool unexpected() {
      unexpectedCall( "allocate...ClassId" );
      return false;
   }
};

class InertEntryManager : public Halyard::HalyardUnboundedTcamEntryManager {
 public:
   static Vesper::Ptr<InertEntryManager> create( Halyard::HalyardTcamGroupManager* gm,
                                                 U32 groupId ) {
      Vesper::Ptr<InertEntryManager> em( new InertEntryManager( gm, groupId ) );
      em->hasNotificationActiveIs( true );
      return em;
   }

   U32 entriesAvailable( U32 ) const override { return unexpected<U32>(); }
   U32 entriesInUse( U32 ) const override { return unexpected<U32>(); }
   void enableEntry( U32, U32, bool, int ) override { unexpected<int>(); }
   int installEntry( U32, U32 ) override { return unexpected<int>(); }
   int removeEntry( U32, U32 ) override { return unexpected<int>(); }
   U64 hitsForEntry( U32, U32 ) const override { return unexpected<U64>(); }
   int setPriorityForEntry( U32, U32, U32 ) override { return unexpected<int>(); }
   void addInPortsForEntry( U32, U32, const bcm_pbmp_t&, const bcm_pbmp_t& ) override {
      unexpected<int>();
   }
   void setTcamEntryBcmPbmpPermanent( U32, U32, bool ) override { unexpected<int>(); }
   bcm_pbmp_t tcamEntryBcmPbmp( U32, U32 ) const override { return unexpected<bcm_pbmp_t>(); }
   U32 getRangeChecker( U32, const Halyard::RangeCheckerDesc& ) override {
      return unexpected<U32>();
   }
   int attachRangeChecker( U32, U32, U32 ) override { return unexpected<int>(); }
   void releaseRangeChecker( U32, const Halyard::RangeCheckerDesc& ) override { unexpected<int>(); }
   Halyard::QualIdList getAclUdf( U32, int, U32, Halyard::UdfOffsetBase, U8, U8 ) override {
      return unexpected<Halyard::QualIdList>();
   }
   void releaseAclUdf( U32, int, U32, Halyard::UdfOffsetBase, U8, U8 ) override {
      unexpected<int>();
   }
   void compressEntries( U32 ) override { unexpected<int>(); }
   int getIpType( U32, U32 ) const override { return unexpected<int>(); }
   void qualifyIpType( U32, U32, bcm_field_IpType_t ) override { unexpected<int>(); }
   U32 getEntry( U32, const Vesper::String& ) override { return unexpected<U32>(); }
   void releaseEntry( U32, U32 ) override { unexpected<int>(); }

 private:
   InertEntryManager( Halyard::HalyardTcamGroupManager* gm, U32 groupId )
       : HalyardUnboundedTcamEntryManager( gm, groupId, "group" + std::to_string( groupId ),
                                           100 + groupId ) {}
   template <class T>
   static T unexpected() {
      unexpectedCall( "an entry manager operation" );
      return T();
   }
};

// Reactors run on the activity thread, with the activity lock held.
class ActivityTest : public ::testing::Test {
 protected:
   Vesper::ActivityLockGuard activity_;
   EventLog events_;
};

}  // namespace TcamTest
