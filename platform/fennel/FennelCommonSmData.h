// The generic ACL layer's shared data, as the back-end reads it.
//
//   intf   interface -> true when the interface takes no ACLs (a management port,
//          an interface of a line card without ACL hardware). An interface that
//          is absent takes ACLs; FennelHelper::AclHelper::intfSupportsAcl()
//          answers from this map for interfaces other than VLANs and
//          port-channels.
//
// One record per agent, owned by the generic layer; the back-end reaches it
// through FennelHelper::AclHelper::fcsd(). Each setter tells the notifiees
// once per real change.
//
// Threads: activity thread.
#pragma once

#include "platform/pylon/IntfId.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"

namespace Fennel {

class FennelCommonSmData : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Fennel::FennelCommonSmData" )

 public:
   using Ptr = Vesper::Ptr<FennelCommonSmData>;
   using PtrConst = Vesper::Ptr<const FennelCommonSmData>;
   using IntfMap = Vesper::HashMap2018<Pylon::IntfId, bool>;

   class NotifieeConst : public Vesper::NotifieeBase<FennelCommonSmData> {
    public:
      virtual void onIntf( Pylon::IntfId ) {}
   };

   // false when absent.
   bool intf( Pylon::IntfId intf ) const;
   const IntfMap& intf() const { return intf_; }
   bool intfHas( Pylon::IntfId intf ) const { return intf_.has( intf ); }
   void intfIs( Pylon::IntfId intf, bool noAcls );
   void intfDel( Pylon::IntfId intf );
   void intfDelAll();

 private:
   friend Ptr fennelCommonSmDataFactory();
   FennelCommonSmData() = default;

   IntfMap intf_;
};

// A new, empty record with notifications on.
FennelCommonSmData::Ptr fennelCommonSmDataFactory();

}  // namespace Fennel
