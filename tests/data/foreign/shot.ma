//Maya ASCII 2018 scene
//Name: shot.ma
file -rdi 1 -ns "lampA" -rfn "lampARN" -op "v=0;" -typ "mayaAscii" "prop.ma";
file -rdi 1 -ns "lampB" -dr 1 -rfn "lampBRN" -op "v=0;" -typ "mayaAscii" "prop.ma";
file -rdi 1 -ns "gone" -rfn "goneRN" -typ "mayaAscii" "not_delivered.ma";
file -r -ns "lampA" -dr 1 -rfn "lampARN" -op "v=0;" -typ "mayaAscii" "prop.ma";
file -r -ns "lampB" -dr 1 -rfn "lampBRN" -op "v=0;" -typ "mayaAscii" "prop.ma";
file -r -ns "gone" -dr 1 -rfn "goneRN" -typ "mayaAscii" "not_delivered.ma";
requires maya "2018";
requires "lightworks" "4.0.2";
currentUnit -l centimeter -a degree -t ntsc;
fileInfo "application" "maya";
createNode transform -n "shotCam";
	setAttr ".t" -type "double3" 2 3 12 ;
createNode camera -n "shotCamShape" -p "shotCam";
	setAttr ".ff" 3;
createNode reference -n "lampARN";
	setAttr ".ed" -type "dataReferenceEdits" 
		"lampARN"
		"lampARN" 0
		"lampARN" 1
		2 "|lampA:lamp" "translateX" " 4"
		;
	setAttr ".ptag" -type "string" "";
createNode reference -n "goneRN";
	setAttr ".ed" -type "dataReferenceEdits" 
		"goneRN"
		"goneRN" 1
		2 "|gone:thing" "visibility" " 0";
	setAttr ".ptag" -type "string" "";
createNode script -n "sceneConfigurationScriptNode";
	setAttr ".b" -type "string" "playbackOptions -min 1 -max 30 -ast 1 -aet 30";
	setAttr ".st" 6;
connectAttr "shotCam.tx" "lampA:bulb.power";
// End of shot.ma
