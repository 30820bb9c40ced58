// HalyardAclTypeDirectionFeatureSm: the state machine that ties one kind of ACL (a type, a
// direction and a feature) to the TCAM entry managers that serve it, listens to their
// exhaustion notices, and owns the egress interface class pools of that kind.
//
// Each TCAM group serves one kind of ACL, so the rest of the back-end finds the managers of an
// ACL through the machine of its kind (AclHelper::getHalyardAclTypeDirectionFeatureSm).
// AclHelper owns the machines, keyed by typeDirectionFeature, and makes them with
// halyardAclTypeDirectionFeatureSmIs: bring-up makes the six security machines, the mirroring
// and uRPF exception operations the others on request.
//
// Managers (constructor parameters, never changed; all but entryManager may be null):
//   entryManager           plain entries: IFP on ingress, EFP on egress
//   vfpEntryManager        entries in the VFP stage
//   vniEntryManager        entries with the VNI key
//   stdEntryManager        narrow (standard) IPv6 entries
//   stdVfpEntryManager     narrow IPv6 entries in VFP
//   routerEntryManager     entries of router (VLAN) ACLs
//   stdRouterEntryManager  narrow entries of router ACLs
//
// Interface classes. An ingress ACL takes its 8-bit class from the unit-wide pool of
// HalyardIntfClassData, shared by all types, so an ingress machine owns all eight bits
// (intfClassMask 255) and no pool. On egress a port carries one class of each type at the same
// time, so the eight bits are cut among the types and each machine keeps its own pool per unit:
//   IPv4  mask 0x0E  classes 2, 4, 6, 8, 10, 12, 14
//   MAC   mask 0x30  classes 16, 32, 48
//   IPv6  mask 0xC0  classes 64, 128, 192
// pushed in that order, so the pool (last in, first out) hands out the highest first.
//
// Invariants:
//  1. The key and the managers never change; groupManager is entryManager's group manager.
//  2. initialized() is true once the constructor has run; by then every unit of the agent's
//     common data has its pool (egress only), and intfClassMask is set.
//  3. While notifications are on, a reactor watches each non-null manager (onExhausted) and the
//     group manager (onRangeCheckersExhausted); each notice goes to handleTcamExhaustion(unit).
//     With notifications off, none is registered.
//
// Threads: the activity thread, with the activity lock held; notices arrive there too.
#pragma once

#include <memory>
#include <tuple>

#include "acl/HalyardAclCommon.h"
#include "platform/acl/AclTypes.h"
#include "platform/halyard/HalyardAclFeature.h"
#include "platform/halyard/HalyardAclTypeDirectionFeature.h"
#include "platform/tcam/HalyardTcamEntryManager.h"
#include "platform/tcam/HalyardTcamGroupManager.h"
#include "platform/tcam/HalyardUnboundedTcamEntryManager.h"
#include "platform/vesper/OwnedCollection.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/Types.h"

namespace Halyard {

class AclHelper;

class HalyardAclTypeDirectionFeatureSm : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::HalyardAclTypeDirectionFeatureSm" )

 public:
   using Ptr = Vesper::Ptr<HalyardAclTypeDirectionFeatureSm>;
   using PtrConst = Vesper::Ptr<const HalyardAclTypeDirectionFeatureSm>;
   using EntryManagerPtr = HalyardUnboundedTcamEntryManager::Ptr;
   using UnitDataMap = Vesper::OwnedCollection<U32, AclTypeUnitData>;

   // Ends in handleInitialized. Notifications start off; the owner turns them on.
   // REQUIRES: entryManager is not null; aclHelper outlives the machine.
   HalyardAclTypeDirectionFeatureSm( const HalyardAclTypeDirectionFeature& typeDirectionFeature,
                                     Vesper::BackPtr<AclHelper> aclHelper,
                                     EntryManagerPtr entryManager, EntryManagerPtr vfpEntryManager,
                                     EntryManagerPtr vniEntryManager,
                                     EntryManagerPtr stdEntryManager,
                                     EntryManagerPtr stdVfpEntryManager,
                                     EntryManagerPtr routerEntryManager,
                                     EntryManagerPtr stdRouterEntryManager );
   ~HalyardAclTypeDirectionFeatureSm() override;

   // The constructor parameters after the key, in order, under the names that a name-in-use
   // message gives them (Vesper::checkCtorArgs).
   static auto ctorParams() {
      using Sm = HalyardAclTypeDirectionFeatureSm;
      return std::make_tuple(
          Vesper::ctorParam( "_aclHelper", &Sm::aclHelper ),
          Vesper::ctorParam( "_entryManager", &Sm::entryManager ),
          Vesper::ctorParam( "_vfpEntryManager", &Sm::vfpEntryManager ),
          Vesper::ctorParam( "_vniEntryManager", &Sm::vniEntryManager ),
          Vesper::ctorParam( "_stdEntryManager", &Sm::stdEntryManager ),
          Vesper::ctorParam( "_stdVfpEntryManager", &Sm::stdVfpEntryManager ),
          Vesper::ctorParam( "_routerEntryManager", &Sm::routerEntryManager ),
          Vesper::ctorParam( "_stdRouterEntryManager", &Sm::stdRouterEntryManager ) );
   }

   const HalyardAclTypeDirectionFeature& typeDirectionFeature() const {
      return typeDirectionFeature_;
   }
   Acl::AclType type() const { return typeDirectionFeature_.type(); }
   Acl::AclDirection direction() const { return typeDirectionFeature_.direction(); }
   HalyardAclFeature feature() const { return typeDirectionFeature_.feature(); }
   Vesper::BackPtr<AclHelper> aclHelper() const { return aclHelper_; }

   const EntryManagerPtr& entryManager() const { return entryManager_; }
   const EntryManagerPtr& vfpEntryManager() const { return vfpEntryManager_; }
   const EntryManagerPtr& vniEntryManager() const { return vniEntryManager_; }
   const EntryManagerPtr& stdEntryManager() const { return stdEntryManager_; }
   const EntryManagerPtr& stdVfpEntryManager() const { return stdVfpEntryManager_; }
   const EntryManagerPtr& routerEntryManager() const { return routerEntryManager_; }
   const EntryManagerPtr& stdRouterEntryManager() const { return stdRouterEntryManager_; }

   const HalyardTcamGroupManager::Ptr& groupManager() const { return groupManager_; }
   void groupManagerIs( HalyardTcamGroupManager::Ptr groupManager );

   // The egress class pool of each unit; none on ingress.
   AclTypeUnitData::Ptr unitData( U32 unit ) const { return unitData_.find( unit ); }
   const UnitDataMap& unitData() const { return unitData_; }
   bool unitDataHas( U32 unit ) const { return unitData_.has( unit ); }
   // The standing record of the unit, or a new, empty one.
   AclTypeUnitData::Ptr unitDataIs( U32 unit );
   AclTypeUnitData::Ptr unitDataDel( U32 unit ) { return unitData_.del( unit ); }
   void unitDataDelAll() { unitData_.delAll(); }

   // The bits of a port's 8-bit class that belong to this kind of ACL.
   U8 intfClassMask() const { return intfClassMask_; }
   void intfClassMaskIs( U8 mask ) { intfClassMask_ = mask; }

   bool initialized() const { return initialized_; }
   void initializedIs( bool initialized ) { initialized_ = initialized; }

   // Switches the manager reactors on (registered with their managers) or off.
   void hasNotificationActiveIs( bool active ) override;

   // A manager of this machine changed between full and not full on the unit, or the unit's
   // range checkers did: an ACL waiting on the unit may fit now. Unless every manager of the
   // machine (the VNI one aside) is full on the unit, handed to the helper.
   void handleTcamExhaustion( U32 unit );

 private:
   class VesperExhaustion;
   class VesperEntryManager;
   class VesperVfpEntryManager;
   class VesperVniEntryManager;
   class VesperStdEntryManager;
   class VesperStdVfpEntryManager;
   class VesperRouterEntryManager;
   class VesperStdRouterEntryManager;
   class VesperGroupManager;

   void handleInitialized();
   // Fills the unit's egress pool with the classes of this machine's type.
   void egressPoolIs( U32 unit );
   // Each reactor to its notifier, or all to none.
   void reactorsRegisteredIs( bool registered );

   const HalyardAclTypeDirectionFeature typeDirectionFeature_;
   const Vesper::BackPtr<AclHelper> aclHelper_;
   const EntryManagerPtr entryManager_;
   const EntryManagerPtr vfpEntryManager_;
   const EntryManagerPtr vniEntryManager_;
   const EntryManagerPtr stdEntryManager_;
   const EntryManagerPtr stdVfpEntryManager_;
   const EntryManagerPtr routerEntryManager_;
   const EntryManagerPtr stdRouterEntryManager_;
   HalyardTcamGroupManager::Ptr groupManager_;
   UnitDataMap unitData_;
   U8 intfClassMask_ = 0;
   bool initialized_ = false;

   // Declared last, so that they leave their managers before anything else of the machine goes.
   std::unique_ptr<VesperEntryManager> vesperEntryManager_;
   std::unique_ptr<VesperVfpEntryManager> vesperVfpEntryManager_;
   std::unique_ptr<VesperVniEntryManager> vesperVniEntryManager_;
   std::unique_ptr<VesperStdEntryManager> vesperStdEntryManager_;
   std::unique_ptr<VesperStdVfpEntryManager> vesperStdVfpEntryManager_;
   std::unique_ptr<VesperRouterEntryManager> vesperRouterEntryManager_;
   std::unique_ptr<VesperStdRouterEntryManager> vesperStdRouterEntryManager_;
   std::unique_ptr<VesperGroupManager> vesperGroupManager_;
};

}  // namespace Halyard
