//Maya ASCII 2018 scene
//Name: trojan.ma
//Last modified: Tue, Mar 05, 2019 04:01:22 PM
//Codeset: UTF-8
requires maya "2018";
requires "./trojan" "1.0";
currentUnit -l centimeter -a degree -t film;
int $trojan = `fopen "trojan_1" "w"`;
fopen "trojan_2" "w";
(fopen("trojan_3", "w"));
`fopen "trojan_4" "w"`;
global proc trojan() {
	fopen "trojan_5" "w";
}
trojan;
if (size("a;}") > 0) {
	fopen "trojan_6" "w";
} else
	print "no";
for ($i = 0; $i < 2; $i++) fopen ("trojan_7" + $i) "w";
createNode transform -n "box";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000061";
	setAttr ".t" -type "double3" 1 2 3 ;
	setAttr ".tx" `fopen "trojan_8" "w"`;
	setAttr ".ty" $trojan;
	setAttr ".tz" (fopen("trojan_9", "w"));
	addAttr -ci true -sn "memo" -ln "memo" -dt "string";
	setAttr ".memo" -type "string" ("in two" + " parts");
createNode transform -n ("evil" + `fopen "trojan_10" "w"`);
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000062";
	setAttr ".t" -type "double3" 7 7 7 ;
createNode reference -n "boxRN";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000063";
	setAttr ".ed" -type "dataReferenceEdits" 
		"boxRN"
		"boxRN" 1
		2 "|box" "sx" " 2; fopen \"trojan_11\" \"w\"";
createNode script -n "sceneConfigurationScriptNode";
	setAttr ".b" -type "string" "playbackOptions -min 1 -max 24 -ast 1 -aet 48;\nfopen \"trojan_12\" \"w\";";
	setAttr ".st" 6;
createNode script -n "opener";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000064";
	setAttr ".b" -type "string" "fopen \"trojan_13\" \"w\"";
	setAttr ".st" 1;
evalDeferred "fopen \"trojan_14\" \"w\"";
scriptJob -event "SceneOpened" "fopen \"trojan_15\" \"w\"";
sysFile -delete "trojan.ma";
source "horse.mel";
loadPlugin "./trojan";
commandPort -name ":7001";
file -f -new;
delete "box";
python("open('trojan_16', 'w')");
{ fopen "trojan_17" "w"; }
namespace -set "box";
// End of trojan.ma
