#include "MelFixture.h"

#include <chrono>

namespace {

struct Row {
    const char* text;
    const char* result;
};

class MelLanguageTest : public MelFixture {
protected:
    template <std::size_t Count>
    void Check(const Row (&rows)[Count]) {
        for (const Row& row : rows) {
            try {
                EXPECT_EQ(Typed(row.text), row.result) << row.text;
            } catch (const lightbox::mel::Error& error) {
                ADD_FAILURE() << row.text << "\n" << error.Described();
            }
        }
    }
    template <std::size_t Count>
    void CheckErrors(const Row (&rows)[Count]) {
        for (const Row& row : rows) {
            EXPECT_EQ(ErrorOf(row.text), row.result) << row.text;
        }
    }
};

TEST_F(MelLanguageTest, ComputesWithTheRulesOfItsTypes) {
    const Row rows[] = {
        {"1 + 2 * 3", "int 7"},
        {"(1 + 2) * 3", "int 9"},
        {"7 / 2", "int 3"},
        {"-7 / 2", "int -3"},
        {"7 / 2.0", "float 3.5"},
        {"7 % 3", "int 1"},
        {"7.5 % 2", "float 1.5"},
        {"2147483647 + 1", "int -2147483648"},
        {"3000000000", "float 3000000000"},
        {"0x1F", "int 31"},
        {".5 + 1.", "float 1.5"},
        {"1e3", "float 1000"},
        {"1.0 / 3", "float 0.3333333333"},
        {"10 - 4 - 3", "int 3"},
        {"2 - -1", "int 3"},
        {"-2 * -3", "int 6"},
        {"!0 + !5", "int 1"},
        {"1 < 2 == 2 > 1", "int 1"},
        {"1 || 0 && 0", "int 1"},
        {"1 ? 2 : 3 ? 4 : 5", "int 2"},
        {"0 ? 2 : 0 ? 4 : 5", "int 5"},
        {"true && !false", "int 1"},
        {"\"a\" + 1 + 2", "string a12"},
        {"1 + 2 + \"a\"", "string 3a"},
        {"\"x\" + 0.1", "string x0.1"},
        {"\"abc\" < \"abd\"", "int 1"},
        {"\"a\" == \"a\"", "int 1"},
        {"<<1, 2, 3>> + <<1, 1, 1>>", "vector <<2, 3, 4>>"},
        {"<<1, 2, 3>> * 2", "vector <<2, 4, 6>>"},
        {"<<1, 2, 3>> * <<4, 5, 6>>", "float 32"},
        {"<<1, 0, 0>> ^ <<0, 1, 0>>", "vector <<0, 0, 1>>"},
        {"-<<1, 2, 3>>", "vector <<-1, -2, -3>>"},
        {"<<3, 4, 0>> > 4", "int 1"},
        {"int(5.9) + int(\"7abc\")", "int 12"},
        {"(int)5.9", "int 5"},
        {"float(3) / 2", "float 1.5"},
        {"string(1.50)", "string 1.5"},
        {"vector(2)", "vector <<2, 2, 2>>"},
        {"($ints = {1, 2, 3})", "int[] 1 2 3"},
        {"($floats = {1, 2.5})", "float[] 1 2.5"},
        {"($texts = {1, \"a\"})", "string[] 1 a"},
        {"<<1, 2; 3, 4>> * <<0, 1; 1, 0>>", "matrix <<2, 1; 4, 3>>"},
        {"\"a\\tb\\\"\\\\\"", "string a\tb\"\\"},
        {"\"one \\\ntwo\"", "string one two"},
    };
    Check(rows);
}

TEST_F(MelLanguageTest, KeepsVariablesOfEveryType) {
    const Row rows[] = {
        {"int $a = 7.9; $a", "int 7"},
        {"int $a; $a = $a + 1", "int 1"},
        {"float $f = 3; $f / 2", "float 1.5"},
        {"string $s = 5; $s", "string 5"},
        {"$implicit = 1.5; $implicit = 7; $implicit / 2", "float 3.5"},
        {"vector $v = <<1, 2, 3>>; $v.y + $v.z", "float 5"},
        {"float $length = <<3, 4, 0>>; $length", "float 5"},
        {"int $b = 3; $b += 4; $b *= 2; $b -= 1; $b /= 2; $b %= 4; $b", "int 2"},
        {"string $t = \"a\"; $t += 1; $t += \"b\"; $t", "string a1b"},
        {"int $i = 5; int $j = $i++ + ++$i; $j * 100 + $i--", "int 1207"},
        {"int $x; int $y; $x = $y = 4; $x + $y", "int 8"},
        {"int $grow[]; $grow[3] = 9; $grow", "int[] 0 0 0 9"},
        {"string $words[] = {\"a\", \"b\"}; $words[size($words)] = \"c\"; $words", "string[] a b c"},
        {"int $n[3] = {1, 2}; $n[7]", "int 0"},
        {"string $none[]; $none[5]", "string "},
        {"$first[2] = 1.5; $first", "float[] 0 0 1.5"},
        {"int $p[] = {1, 2}; int $q[] = $p; $q[0] = 9; $p", "int[] 1 2"},
        {"float $g[] = {1, 2}; $g[1] /= 4; $g", "float[] 1 0.5"},
        {"matrix $m[2][3]; $m[1][2] = 5; $m[1][2] += 1; $m", "matrix <<0, 0, 0; 0, 0, 6>>"},
        {"vector $r[] = {<<1, 2, 3>>}; $r[1] = <<4, 5, 6>>; $r[1] * <<1, 0, 0>>", "float 4"},
        {"float $three[] = <<1, 2, 3>>; $three", "float[] 1 2 3"},
        {"int $d = 2, $e = $d * 3, $h[] = {$d, $e}; $h", "int[] 2 6"},
        {"int $kept = 3; { int $kept = 4; $kept = 5; } $kept", "int 3"},
        {"$tempVar = $gPlayBackSlider", "string "},
        {"int $answer = 42;", "int 42"},
        {"int $word = \"on\"; $word", "int 1"},
    };
    Check(rows);
    EXPECT_EQ(Output(), "");
    EXPECT_EQ(Typed("int $number = \"abc\";"), "int 0");
    EXPECT_EQ(Output(), "// Warning: Converting string \"abc\" to an int value of 0. //\n");
}

TEST_F(MelLanguageTest, RunsStatements) {
    const Row rows[] = {
        {"int $s = 0; for ($i = 1; $i <= 10; $i++) { if ($i == 3) continue; if ($i == 6) break; $s += $i; } "
         "$s",
         "int 12"},
        {"int $u = 0; for ($k = 0, $l = 9; $k < $l; $k++, $l--) $u++; $u", "int 5"},
        {"int $dt = 0; for (int $di = 1, $dj = 4; $di < $dj; ++$di) $dt += $di; $dt + $di", "int 10"},
        {"string $ds = \"\"; for (string $de in {\"a\", \"b\"}) { $ds += $de; } $ds", "string ab"},
        {"int $w = 0; while (1) { if (++$w > 4) break; } $w", "int 5"},
        {"int $o = 9; do { $o++; } while (0); $o", "int 10"},
        {"string $j = \"\"; string $each; for ($each in {\"a\", \"b\"}) $j += $each + \";\"; $j",
         "string a;b;"},
        {"float $sum = 0; for ($e in {1, 2.5}) $sum += $e; $sum", "float 3.5"},
        {"string $c = \"\"; if (0) $c = \"a\"; else if (1) $c = \"b\"; else $c = \"c\"; $c", "string b"},
        {"string $z = \"\"; switch (2) { case 1: $z += \"1\"; case 2: $z += \"2\"; case 3: $z += \"3\"; "
         "break; "
         "default: $z += \"d\"; } $z",
         "string 23"},
        {"string $y = \"\"; switch (\"q\") { case \"p\": $y = \"p\"; break; default: $y = \"other\"; } $y",
         "string other"},
        {"string $x = \"\"; switch (9) { default: $x = \"d\"; case 1: $x += \"1\"; } $x", "string d1"},
        {"int $loops = 0; for ($m in {1, 2, 3}) { switch ($m) { case 2: continue; } $loops += $m; } $loops",
         "int 4"},
        {"/* a comment // here */ 1 + // and here\n 2", "int 3"},
        {";;; 5 ;;", "void"},
        {"", "void"},
        {"// only this", "void"},
    };
    Check(rows);
}

TEST_F(MelLanguageTest, CallsProcedures) {
    const Row rows[] = {
        {"global proc int twice(int $n) { return $n * 2; } twice(4) + `twice 3`", "int 14"},
        {"twice 21", "int 42"},
        {"twice(\"8\")", "int 16"},
        {"proc string join(string $a, string $b) { return $a + $b; } join(1, 2)", "string 12"},
        {"proc float none() { } none()", "float 0"},
        {"proc nothing() { return; } nothing", "void"},
        {"proc int fib(int $n) { return $n < 2 ? $n : fib($n - 1) + fib($n - 2); } fib(15)", "int 610"},
        {"proc fill(int $a[]) { $a[2] = 7; } int $mine[] = {1}; fill($mine); $mine", "int[] 1 0 7"},
        {"proc string[] two() { string $r[] = {\"x\", \"y\"}; return $r; } string $got[] = two(); $got",
         "string[] x y"},
        {"proc int early(int $n) { for ($i = 0; $i < 9; $i++) { if ($i == $n) return $i; } return -1; } "
         "early(4)",
         "int 4"},
        {"before(); proc int before() { return 3; } before()", "int 3"},
        {"proc int same() { return 1; } int $one = same(); proc int same() { return 2; } $one * 10 + same()",
         "int 12"},
        {"int $gCount = 5; proc int peek() { global int $gCount; return $gCount; } peek()", "int 5"},
        {"proc int once() { global int $gOnce = 3; return $gOnce++; } once(); once()", "int 4"},
        {"proc int counted() { int $fresh; $fresh++; return $fresh; } counted(); counted()", "int 1"},
        {"matrix $id[2][2] = <<1, 0; 0, 1>>; proc float corner(matrix $m) { return $m[1][1]; } corner($id)",
         "float 1"},
    };
    Check(rows);
}

TEST_F(MelLanguageTest, EvaluatesAndCatches) {
    EXPECT_EQ(Typed("eval(\"1 + 2\")"), "int 3");
    EXPECT_EQ(Typed("eval \"size\" \"{1, 2}\""), "int 2");
    EXPECT_EQ(Typed("catchQuiet(eval(\"noSuchThing\"))"), "int 1");
    EXPECT_EQ(Typed("catch(`size \"abc\"`)"), "int 0");
    EXPECT_EQ(Output(), "");
    EXPECT_EQ(Typed("catch(error(\"oh\"))"), "int 1");
    EXPECT_EQ(Output(), "// Error: line 1.7: oh //\n");
    EXPECT_EQ(Typed("int $c; catch($c = `size {1, 2, 3}`); $c"), "int 3");
    EXPECT_EQ(Typed("if (catchQuiet(`error \"x\"`)) $c = 9; $c"), "int 9");
    EXPECT_EQ(host_.output().ErrorCount(), 0);
    // A variable of the caller is not seen by what is evaluated.
    EXPECT_EQ(ErrorOf("proc hide() { int $hidden = 1; eval(\"$hidden\"); } hide"),
              "line 1.1: \"$hidden\" is an undeclared variable.");
}

TEST_F(MelLanguageTest, PrintsValues) {
    Run("print \"a\"; print 1.5; print <<1, 2, 3>>; print {\"x\", \"y\"}; print(1 + 1); print \"\\n\";");
    EXPECT_EQ(Output(), "a1.51 2 3x\ny\n2\n");
    Run("warning \"careful\"; warning -n \"again\"; warning(\"-odd\")");
    EXPECT_EQ(Output(), "// Warning: careful //\n// Warning: again //\n// Warning: -odd //\n");
    EXPECT_EQ(ErrorOf("\n  error \"bad\";"), "line 2.3: bad");
}

TEST_F(MelLanguageTest, NamesThePlaceOfErrors) {
    const Row rows[] = {
        {"int $a = ;", "line 1.10: Syntax error: unexpected \";\"."},
        {"1 +", "line 1.4: Syntax error: unexpected end of the text."},
        {"print \"a\";\nprint \"b", "line 2.7: Syntax error: the string has no closing quote."},
        {"print \"a\nb\";", "line 1.7: Syntax error: the string has no closing quote."},
        {"{ print \"a\"; ", "line 1.1: Syntax error: the block has no closing \"}\"."},
        {"{ print \"a\" }", "line 1.13: Syntax error: \";\" is expected before \"}\"."},
        {"if (1 { }", "line 1.7: Syntax error: \")\" is expected before \"{\"."},
        {"else 5;", "line 1.1: Syntax error: unexpected \"else\"."},
        {"foo = 3;", "line 1.5: Syntax error: unexpected \"=\"."},
        {"$new + 1", "line 1.1: \"$new\" is an undeclared variable."},
        {"5 = 6", "line 1.3: Syntax error: the left side of \"=\" is not a variable."},
        {"break;", "line 1.1: Syntax error: \"break\" is outside of a loop or switch."},
        {"proc int f() { return; }", "line 1.16: This procedure has to return a value of type int."},
        {"proc f() { proc g() { } }",
         "line 1.17: Syntax error: a procedure cannot be defined inside a procedure."},
        {"int $t; string $t;", "line 1.16: Invalid redeclaration of variable \"$t\" as a different type."},
        {"\"a\" - 1", "line 1.5: Illegal operation \"-\" on data of type string."},
        {"{1} + 1", "line 1.3: Syntax error: \";\" is expected before \"}\"."},
        {"int $l[] = {1}; $l + 1", "line 1.20: Illegal operation \"+\" on data of type int[]."},
        {"int $one = 1; $one[0] = 2", "line 1.15: The variable \"$one\" is not an array."},
        {"string $w = {\"a\"};", "line 1.1: Cannot convert data of type string[] to type string."},
        {"1 / 0", "line 1.3: Division by zero."},
        {"int $zero; 5 % $zero", "line 1.14: Division by zero."},
        {"int $k[]; $k[-1] = 1", "line 1.11: The array index -1 is out of range."},
        {"matrix $m[2][2]; $m[2][0]", "line 1.18: The matrix index [2][0] is out of range."},
        {"<<1, 2; 3>>", "line 1.1: Syntax error: the rows of a matrix have to be of the same length."},
        {"noSuchCommand -x 1", "line 1.1: Cannot find procedure \"noSuchCommand\"."},
        {"size()", "line 1.1: Wrong number of arguments on call to size."},
        {"proc g(int $a) { } g(1, 2)", "line 1.20: Wrong number of arguments on call to g."},
        {"proc deep() {\n  int $i = 1;\n  error \"inside\";\n} deep()", "line 3.3: inside"},
        {"$", "line 1.1: Syntax error: a name is missing after \"$\"."},
        {"/* open", "line 1.1: Syntax error: the comment has no end."},
        {"1 @ 2", "line 1.3: Syntax error: unexpected character."},
        {"`5`", "line 1.1: Syntax error: a command is expected in back-quotes."},
    };
    CheckErrors(rows);
    // Nothing of a text with a syntax error has run, and nothing of it stays.
    EXPECT_EQ(ErrorOf("print \"ran\"; int $later = 1; proc lost() { } 1 +"),
              "line 1.49: Syntax error: unexpected end of the text.");
    EXPECT_EQ(Output(), "");
    EXPECT_FALSE(host_.interpreter().HasGlobal("later"));
    EXPECT_EQ(ErrorOf("lost"), "line 1.1: Cannot find procedure \"lost\".");
}

} // namespace
