#include "MelFixture.h"
#include "mel/SyntaxBuilder.h"

using lightbox::mel::CommandCall;
using lightbox::mel::SyntaxBuilder;
using lightbox::mel::Value;

namespace {

class MelCommandSyntaxTest : public MelFixture {
protected:
    MelCommandSyntaxTest() {
        auto& commands = host_.interpreter().Commands();
        // Answers its arguments, each with the first letter of its type.
        commands.RegisterRaw("probe", 0, ~0u, [](CommandCall& call) {
            std::string text;
            for (const Value& value : call.Objects()) {
                text += text.empty() ? "" : " ";
                text += std::string(TypeName(value.GetType())).substr(0, 1) + ":" + value.Shown();
            }
            return Value(text);
        });
        commands.Register("parse",
                          SyntaxBuilder()
                              .Flag("-n", "-name", MSyntax::kString)
                              .Flag("-nc", "-newCamera", MSyntax::kString)
                              .Flag("-mv", "-move", MSyntax::kUnsigned, MSyntax::kLong)
                              .Flag("-act", "-active", MSyntax::kUnsigned)
                              .Flag("-en", "editName", MSyntax::kString, MSyntax::kUnsigned)
                              .Flag("-o", "-opacity", MSyntax::kDouble)
                              .Flag("-v", "-visible", MSyntax::kBoolean)
                              .Flag("-k", "-kill", MSyntax::kLong)
                              .MultiUse()
                              .Flag("-rf", "-refresh")
                              .Flag("-rg", "-refreshGhosting")
                              .Query()
                              .Edit()
                              .Objects(0, 2),
                          Parsed);
    }

    static Value Parsed(CommandCall& call) {
        std::string text = call.IsQuery() ? "q" : call.IsEdit() ? "e" : "c";
        for (const char* const flag : {"-n", "-nc", "-mv", "-act", "-en", "-o", "-v", "-k", "-rf", "-rg"}) {
            for (unsigned use = 0; use < call.UseCount(flag); ++use) {
                text += std::string(" ") + flag;
                try {
                    text += "=" + call.Argument(flag, 0, use).AsString();
                    text += "," + call.Argument(flag, 1, use).AsString();
                } catch (const lightbox::mel::Error&) {
                    // It has no more arguments.
                }
            }
        }
        for (const std::string& object : call.ObjectNames()) {
            text += " " + object;
        }
        return text;
    }
};

TEST_F(MelCommandSyntaxTest, ReadsEveryKindOfArgument) {
    const struct {
        const char* text;
        const char* arguments;
    } rows[] = {
        {"probe", ""},
        {"probe a 1 2.5 \"b c\"", "s:a i:1 f:2.5 s:b c"},
        {"probe -flag -1 -.5 -1e-3 .5 +4", "s:-flag i:-1 f:-0.5 f:-0.001 f:0.5 i:4"},
        {"probe |a|b.c[2].d ns:obj *:cam? .tx a.vtx[0:7] ..",
         "s:|a|b.c[2].d s:ns:obj s:*:cam? s:.tx s:a.vtx[0:7] s:.."},
        {"probe int for string in if 2d on", "s:int s:for s:string s:in s:if s:2d s:on"},
        {"int $a[] = {4, 5}; string $s = \"x\"; probe $s $a[1] ($s + 1) -$a[0] -($a[1] + 1)",
         "s:x i:5 s:x1 i:-4 i:-6"},
        {"probe $a <<1, 2, 3>> {6, 7}", "i:4 5 v:<<1, 2, 3>> i:6 7"},
        {"vector $v = <<1, 2, 3>>; probe $v.y", "f:2"},
        {"probe `size {1, 2}` `probe \"n\"`", "i:2 s:s:n"},
        {"probe (`size (`probe`)`)", "i:0"},
        {"probe(1, \"-x\")", "i:1 s:-x"},
        {"probe (\"a\" + \".tx\") 5", "s:a.tx i:5"},
        {"probe (\"a\") -1", "s:a i:-1"},
        {"probe(\"a\") \"b\"", "s:a s:b"},
        {"probe (1, 2)", "i:1 i:2"},
        {"probe a// comment\n b /* c */ c", "s:a s:b s:c"},
        {"probe \"\\xe4\xc3\xa4\" \xc3\xa4\xc3\xb6", "s:xe4\xc3\xa4 s:\xc3\xa4\xc3\xb6"},
        {"probe -longName", "s:-longName"},
        {"probe a\n-b\n\n1", "s:a s:-b i:1"},
        {"string $node = \"cube\"; probe $node.tx $node.vtx[0:3] -x", "s:cube.tx s:cube.vtx[0:3] s:-x"},
        {"string $nodes[] = {\"a\", \"b\"}; probe $nodes[1].x `probe $nodes[0].spans`", "s:b.x s:s:a.spans"},
        {"int $i = 2; probe cube.vtx[$i] cube.f[$i + 1:$i * 3].x `probe ns:c.e[$i]`",
         "s:cube.vtx[2] s:cube.f[3:6].x s:s:ns:c.e[2]"},
        {"{ global proc int inBlock() { return 3; } } probe (inBlock())", "i:3"},
    };
    for (const auto& row : rows) {
        try {
            EXPECT_EQ(Run(row.text).AsString(), row.arguments) << row.text;
        } catch (const lightbox::mel::Error& error) {
            ADD_FAILURE() << row.text << "\n" << error.Described();
        }
    }
    EXPECT_EQ(Typed("size({1, 2}) - 1"), "int 1");
    EXPECT_EQ(Typed("size({1, 2})-1"), "int 1");
    EXPECT_EQ(Typed("size({1, 2}) * 3 > 5 ? 7 : 8"), "int 7");
}

TEST_F(MelCommandSyntaxTest, ReadsFlagsAgainstTheSyntax) {
    const struct {
        const char* text;
        const char* result;
    } rows[] = {
        {"parse", "c"},
        {"parse -n \"a\" persp", "c -n=a persp"},
        {"parse persp -name a -mv 1 -2 top", "c -n=a -mv=1,-2 persp top"},
        {"parse -newCamera b -move 1 2 persp", "c -nc=b -mv=1,2 persp"},
        {"parse -q -active persp", "q -act persp"},
        {"parse -active -q persp", "q -act persp"},
        {"parse -query -act persp 5", "q -act persp 5"},
        {"parse -e -active 2 persp", "e -act=2 persp"},
        {"parse -active 2 -edit persp", "e -act=2 persp"},
        {"parse -editName \"x\" 1", "c -en=x,1"},
        {"parse -en \"x\" 1", "c -en=x,1"},
        {"parse -k 1 -k 2 -kill 3", "c -k=1 -k=2 -k=3"},
        {"parse -opac .5 -vis on", "c -o=0.5 -v=on"},
        {"parse -o \"1.5\" -v 0 -k \"7\"", "c -o=1.5 -v=0 -k=7"},
        {"parse -refresh", "c -rf"},
        {"parse -refreshG", "c -rg"},
        {"parse -n \"-n\"", "c -n=-n"},
        {"parse -n \"-q\" a", "c -n=-q a"},
        {"parse(\"-n\", \"a\", \"-q\")", "q -n a"},
        {"parse a \"-n\"", "c a -n"},
        {"string $objects[] = {\"a\", \"b\"}; parse $objects", "c a b"},
    };
    for (const auto& row : rows) {
        try {
            EXPECT_EQ(Run(row.text).AsString(), row.result) << row.text;
        } catch (const lightbox::mel::Error& error) {
            ADD_FAILURE() << row.text << "\n" << error.Described();
        }
    }
    const struct {
        const char* text;
        const char* message;
    } errors[] = {
        {"parse -zz", "Invalid flag '-zz'"},
        {"parse -re", "Ambiguous flag '-re'"},
        {"parse -n", "Flag '-n' must be passed a string argument"},
        {"parse -n -o 1", "Flag '-n' must be passed a string argument"},
        {"parse -name 5", "Flag '-name' must be passed a string argument"},
        {"parse -act -1", "Flag '-act' must be passed an unsigned int argument"},
        {"parse -act x", "Flag '-act' must be passed an unsigned int argument"},
        {"parse -o abc", "Flag '-o' must be passed a numeric argument"},
        {"parse -v maybe", "Flag '-v' must be passed a boolean argument"},
        {"parse -mv 1", "Flag '-mv' must be passed an int argument as number 2 of 2"},
        {"parse -n a -n b", "Flag '-n' cannot be used more than once"},
        {"parse a b c", "Too many objects or values."},
    };
    for (const auto& row : errors) {
        EXPECT_EQ(ErrorOf(row.text), std::string("line 1.1: ") + row.message) << row.text;
    }
}

} // namespace
