// Sim::VlanTopoAgent: the VLAN topology agents of the simulated switch, one per chip, that
// carry out what the ACL back-end asks of them in VlanTopoSliceStatus.
//
// A block request (block[(module, VLAN)] true) is carried out by setting
// HalyardCentral::classDropRoutedTraffic_ in the VLAN's L2 class on that module's chip, so that
// the VLAN-blocking management entry drops the VLAN's routed traffic, and answered with
// blocked[(module, VLAN)] = true in VlanTopoBlockedStatus. A request withdrawn (deleted, or set
// false) clears the bit and withdraws the answer (the member is deleted: absent reads as not
// blocked). A VLAN class request (aclVlanClassIdPerChip[chip].vlanClassId[VLAN]) is applied to
// the other bits of the VLAN's L2 class, and a deleted one clears them; class requests have no
// answer record.
//
// Contract:
//   1. Nothing happens between steps: requests wait, visibly, until step() (every chip) or
//      step( modId ) (one chip's agent) carries them out, so that tests see the states between
//      a request and its answer. pending() counts what a step would do.
//   2. A step compares the requests with the answers standing and does the difference, VLANs in
//      rising order; the chips are walked in rising module id. The answers are the agent's
//      memory of blocks, so an answer changed by someone else is put right by the next step.
//   3. Requests for a module or chip number that is none of the agent's chips are left alone.
//   4. Each answer is written after the chip is changed: a reader that sees the answer finds
//      the chip already dropping.
//
// Threads: the activity thread.
#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "platform/status/VlanTopoBlockedStatus.h"
#include "platform/status/VlanTopoSliceStatus.h"
#include "platform/vesper/Types.h"
#include "sim/agents/AgentChip.h"

namespace Sim {

class VlanTopoAgent {
 public:
   VlanTopoAgent( std::vector<AgentChip> chips, HalyardVlanTopo::VlanTopoSliceStatus::Ptr requests,
                  HalyardVlanTopo::VlanTopoBlockedStatus::Ptr answers );

   U32 pending() const;
   U32 pending( Pylon::ModId modId ) const;
   // Carries out what is pending; answers how many blocks, unblocks and class changes it made.
   U32 step();
   U32 step( Pylon::ModId modId );

 private:
   struct Work {
      std::vector<HalyardVlanTopo::AclModSvi> block;
      std::vector<HalyardVlanTopo::AclModSvi> unblock;
      std::vector<std::pair<U32, std::optional<U16> > > classes;  // VLAN -> class, or clear
      U32 size() const {
         return static_cast<U32>( block.size() + unblock.size() + classes.size() );
      }
   };

   const AgentChip* chipOf( Pylon::ModId modId ) const;
   Work workOf( const AgentChip& chip ) const;
   void classWorkOf( const AgentChip& chip, Work& work ) const;
   U32 carryOut( const AgentChip& chip );

   std::vector<AgentChip> chips_;  // rising module id
   HalyardVlanTopo::VlanTopoSliceStatus::Ptr requests_;
   HalyardVlanTopo::VlanTopoBlockedStatus::Ptr answers_;
   // Class requests applied, by (chip number, VLAN): what a deleted request must undo.
   std::map<std::pair<U16, U32>, U16> appliedClass_;
};

}  // namespace Sim
