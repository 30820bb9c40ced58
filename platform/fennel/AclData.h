// A view of one ACL as the back-end sees it: its key and its ACL priority
// number, which orders the entries of different ACLs in one TCAM group (a
// higher number gives its rules higher priority).
//
// A plain value for now; the generic layer will grow it into the record it
// keeps per ACL.
#pragma once

#include "platform/fennel/AclKey.h"
#include "platform/vesper/Types.h"

namespace Fennel {

class AclData {
 public:
   AclData() = default;
   explicit AclData( AclKey key, U32 aclPriority = 0 )
       : key_( std::move( key ) ), aclPriority_( aclPriority ) {}

   const AclKey& key() const { return key_; }
   U32 aclPriority() const { return aclPriority_; }
   void aclPriorityIs( U32 priority ) { aclPriority_ = priority; }

   friend bool operator==( const AclData&, const AclData& ) = default;

 private:
   AclKey key_;
   U32 aclPriority_ = 0;
};

}  // namespace Fennel
