// Shared pieces of the tests of the generic layer's platform classes.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/fennel/FennelAclHelper.h"
#include "platform/vesper/ActivityLock.h"

namespace FennelTest {

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

// A back-end that overrides nothing but dirtyIs, which it extends the way a
// real back-end does: the base stores first, then the back-end reacts.
class StubBackEnd : public FennelHelper::AclHelper {
 public:
   static Vesper::Ptr<StubBackEnd> create() {
      Vesper::Ptr<StubBackEnd> helper( new StubBackEnd );
      helper->hasNotificationActiveIs( true );
      return helper;
   }

   void dirtyIs( bool dirty ) override {
      AclHelper::dirtyIs( dirty );
      dirtySeen.push_back( this->dirty() );
   }

   // The value of dirty() after each call of dirtyIs, as the extension saw it.
   std::vector<bool> dirtySeen;

 private:
   StubBackEnd() = default;
};

class ActivityTest : public ::testing::Test {
 protected:
   Vesper::ActivityLockGuard activity_;
   EventLog events_;
};

}  // namespace FennelTest
