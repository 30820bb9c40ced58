// What the back-end reads from the process rather than from its inputs: the environment
// variable SIMULATION_VMID (entries are not installed under it) and the feature toggle
// HalyardMirrorOnDrop. A test that depends on either holds a CleanProcessState ahead of its
// switches and sets what it needs.
#pragma once

namespace HalyardTest {

// Clears both, and the toggles' kept answers, now and when it ends.
class CleanProcessState {
 public:
   CleanProcessState();
   ~CleanProcessState();
   CleanProcessState( const CleanProcessState& ) = delete;
   CleanProcessState& operator=( const CleanProcessState& ) = delete;

   // Sets SIMULATION_VMID, so that a bring-up after it leaves installEntries false.
   void simulationVmidIs( const char* value );
   // Sets the toggle and forgets the kept answer, so that the next bring-up reads it.
   void mirrorOnDropIs( bool on );
};

}  // namespace HalyardTest
