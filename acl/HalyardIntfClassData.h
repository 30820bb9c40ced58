// HalyardIntfClassData: per unit, the pool of free ingress interface classes, shared by all
// ingress ACL types of the unit. hwInit pushes 1 to 255; the pool is last in, first out, and
// a class is owned by at most one ACL of the unit at a time.
#pragma once

#include "acl/HalyardAclCommon.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/Types.h"

namespace Halyard {

// The free ingress interface classes of one unit.
class HalyardIntfClassData : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::HalyardIntfClassData" )

 public:
   using Ptr = Vesper::Ptr<HalyardIntfClassData>;

   explicit HalyardIntfClassData( U32 unit ) : unit_( unit ) {}

   U32 unit() const { return unit_; }

   const IntfClassPool& freeAclIntfClass() const { return freeAclIntfClass_; }
   U32 freeAclIntfClassPush( U8 intfClass ) { return freeAclIntfClass_.push( intfClass ); }
   // The next free class; 0 when none is left.
   U8 freeAclIntfClassPop() { return freeAclIntfClass_.pop(); }
   void freeAclIntfClassIs( U32 index, U8 intfClass ) { freeAclIntfClass_.is( index, intfClass ); }
   void freeAclIntfClassDel( U32 index ) { freeAclIntfClass_.del( index ); }
   void freeAclIntfClassDelAll() { freeAclIntfClass_.delAll(); }

 private:
   const U32 unit_;
   IntfClassPool freeAclIntfClass_;
};

}  // namespace Halyard
