//Maya ASCII 2018 scene
//Name: shelf.ma
//Last modified: Tue, Mar 05, 2019 04:01:22 PM
//Codeset: UTF-8
file -rdi 1 -ns "lamp" -rfn "lampRN" -op "v=0;" -typ "mayaAscii" "$VELLIX_TEST_SHOW/prop.ma";
file -rdi 1 -ns "lamp1" -rfn "lampRN1" -op "v=0;" -typ "mayaAscii" "$VELLIX_TEST_SHOW/prop.ma{1}";
file -rdi 2 -ns "bulb" -dr 1 -rfn "lamp:bulbRN" -typ "mayaAscii" "bulb.ma";
file -rdi 1 -ns "vase" -rfn "vaseRN" -typ "mayaBinary" "P:/show/props/vase.mb";
file -rdi 1 -ns "rug" -rfn "rugRN" -shd "displayLayers" -shd "shadingNetworks" -typ "mayaAscii" "$NO_SUCH_SHOW/rug.ma";
file -r -ns "lamp" -dr 1 -rfn "lampRN" -op "v=0;" -typ "mayaAscii" "$VELLIX_TEST_SHOW/prop.ma";
file -r -ns "lamp1" -dr 1 -rfn "lampRN1" -op "v=0;" -typ "mayaAscii" "$VELLIX_TEST_SHOW/prop.ma{1}";
file -r -ns "vase" -dr 1 -rfn "vaseRN" -typ "mayaBinary" "P:/show/props/vase.mb";
file -r -ns "rug" -dr 1 -rfn "rugRN" -shd "displayLayers" -shd "shadingNetworks" -typ "mayaAscii" "$NO_SUCH_SHOW/rug.ma";
file -r -rpr "old" -dr 1 -rfn "oldRN" -typ "mayaAscii" "prop.ma";
requires maya "2018";
currentUnit -l centimeter -a degree -t film;
createNode reference -n "vaseRN";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000031";
	setAttr ".ed" -type "dataReferenceEdits" 
		"vaseRN"
		"vaseRN" 1
		2 "|vase:vase" "translate" " -type \"double3\" 1 2 3";
	setAttr ".ptag" -type "string" "";
select -ne "rug:rug";
	setAttr ".ty" 0.5;
	lockNode -l 1 ;
disconnectAttr "rug:rug.tx" "rug:fringe.tx";
parent -s -nc -r -add "|rug:rug|rug:rugShape" "rug:fringe" ;
// End of shelf.ma
