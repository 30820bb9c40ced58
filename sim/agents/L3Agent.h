// Sim::L3Agent: the L3 agents of the simulated switch, one per chip, that apply the L3
// interface classes the ACL back-end requests in L3SliceAgentStatus and answer in L3IntfStatus.
//
// A request intfClassIdPerChipRequest[module].intfClassId[VLAN] = c is carried out by setting
// the VLAN's L3 interface class (what InterfaceClassL3 entries see) to c on that module's chip,
// and answered with intfClassIdPerChipResponse[module].intfClassId[VLAN] = c. A deleted request
// sets the class back to 0 and answers 0: answers are never deleted, since a reader hears of
// every change with the VLAN and may look the VLAN up (the back-end's sharing manager asserts
// that it is there).
//
// Contract:
//   1. At construction each chip's agent publishes its (empty) response record, as an agent
//      does when it starts, so that readers can attach to it at once.
//   2. Nothing happens between steps: step() (every chip) or step( modId ) (one chip's agent)
//      carries out what pending() counts, VLANs in rising order, chips in rising module id.
//   3. A step compares the requests with the answers standing and does the difference: an
//      answer left from before (an agent restart) and no longer requested goes back to 0.
//   4. The model has an L3 class for every VLAN 0 to 4095, whether or not the profile gives it
//      an interface, so any such VLAN is applied. A request for a VLAN above 4095 can not be
//      carried out; it is never answered and never counted as pending.
//   5. Each answer is written after the chip is changed.
//
// Threads: the activity thread.
#pragma once

#include <utility>
#include <vector>

#include "platform/status/L3IntfStatus.h"
#include "platform/status/L3SliceAgentStatus.h"
#include "platform/vesper/Types.h"
#include "sim/agents/AgentChip.h"

namespace Sim {

class L3Agent {
 public:
   L3Agent( std::vector<AgentChip> chips, HalyardL3::L3SliceAgentStatus::Ptr requests,
            HalyardL3::L3IntfStatus::Ptr answers );

   U32 pending() const;
   U32 pending( Pylon::ModId modId ) const;
   // Carries out what is pending; answers how many classes it applied.
   U32 step();
   U32 step( Pylon::ModId modId );

 private:
   // VLAN -> the class to apply and answer.
   using Work = std::vector<std::pair<U32, HalyardL3::IntfClassId> >;

   const AgentChip* chipOf( Pylon::ModId modId ) const;
   Work workOf( const AgentChip& chip ) const;
   U32 carryOut( const AgentChip& chip );

   std::vector<AgentChip> chips_;  // rising module id
   HalyardL3::L3SliceAgentStatus::Ptr requests_;
   HalyardL3::L3IntfStatus::Ptr answers_;
};

}  // namespace Sim
