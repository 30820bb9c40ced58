// The ClassBench sets through the tool: each filter set as an IPv4 list bound in on both units
// of the default switch, its trace replayed with --check. Every packet agrees with the reference
// evaluator, and a pcap of the same packets (all in on one port) gets the same verdict and hit
// rule packet by packet.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/e2e/ClassBenchFiles.h"
#include "tests/e2e/ToolRunner.h"

namespace {

using HalyardE2e::runTool;
using nlohmann::json;

struct Replay {
   std::vector<json> packets;
   json summary;
};

Replay parseReplay( const std::string& out ) {
   Replay r;
   std::istringstream lines( out );
   for ( std::string line; std::getline( lines, line ); ) {
      json j = json::parse( line );
      if ( j.contains( "summary" ) ) {
         r.summary = j["summary"];
      } else {
         r.packets.push_back( j );
      }
   }
   return r;
}

class ClassBenchReplay : public testing::TestWithParam<std::string> {};

TEST_P( ClassBenchReplay, EveryPacketAgreesAndTheCaptureGivesTheSameVerdicts ) {
   const HalyardE2e::ClassBenchFiles files =
       HalyardE2e::writeClassBenchFiles( GetParam(), testing::TempDir() );
   ASSERT_GT( files.rules, 500u );
   ASSERT_GT( files.packets, 5000u );

   const auto lines = runTool( { "replay", "--json", "--check", files.config, files.jsonl } );
   ASSERT_EQ( 0, lines.exitCode ) << lines.err.substr( 0, 2000 );
   const Replay fromLines = parseReplay( lines.out );
   ASSERT_EQ( files.packets, fromLines.packets.size() );
   EXPECT_EQ( files.packets, fromLines.summary["packets"] );
   EXPECT_EQ( 0, fromLines.summary["disagree"] );
   // Both verdicts occur: the check is not vacuous.
   EXPECT_GT( fromLines.summary["permit"], 0 );
   EXPECT_GT( fromLines.summary["deny"], 0 );

   const auto capture =
       runTool( { "replay", "--json", "--check", "--in", "Ethernet25", files.config, files.pcap } );
   ASSERT_EQ( 0, capture.exitCode ) << capture.err.substr( 0, 2000 );
   const Replay fromCapture = parseReplay( capture.out );
   ASSERT_EQ( fromLines.packets.size(), fromCapture.packets.size() );
   std::size_t differ = 0;
   for ( std::size_t i = 0; i < fromLines.packets.size(); ++i ) {
      const json& a = fromLines.packets[i];
      const json& b = fromCapture.packets[i];
      if ( ( a["verdict"] != b["verdict"] || a["acls"] != b["acls"] ) && ++differ <= 5 ) {
         ADD_FAILURE() << "packet " << i + 1 << ": lines " << a.dump() << ", capture " << b.dump();
      }
   }
   EXPECT_EQ( 0u, differ );
}

INSTANTIATE_TEST_SUITE_P( Sets, ClassBenchReplay,
                          testing::Values( "acl1_1k", "fw1_1k", "ipc1_1k" ) );

}  // namespace
