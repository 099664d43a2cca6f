//Maya ASCII 2018 scene
//Name: attributes.ma
//Last modified: Tue, Mar 05, 2019 04:01:22 PM
//Codeset: UTF-8
requires maya "2018";
currentUnit -l centimeter -a degree -t film;
createNode transform -n "rig";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000011";
	addAttr -is true -ci true -k true -sn "mode" -ln "mode" -dcb 2 -min 0 -max 2 -en "ik:fk:both" -at "enum";
	addAttr -ci true -bt "RIG1" -ct "controls" -ct "export" -sn "weight" -ln "weight" -dv 1 -at "double";
	addAttr -ci false -uaf -sn "map" -ln "map" -dt "string";
	addAttr -s false -fp true -ws true -sn "gone" -ln "gone" -at "bool";
	addAttr -uap -pxy "rig.weight" -sn "wgtProxy" -ln "weightProxy" -at "double";
	addAttr -ci true -sn "off" -ln "offsetBy" -dt "double3";
	addAttr -ci true -uac -sn "tint" -ln "tint" -dt "float3";
	addAttr -ci true -m -im false -sn "parts" -ln "parts" -at "message";
	addAttr -ci true -sn "bind" -ln "bindMatrix" -at "fltMatrix";
	addAttr -ci true -sn "spec" -ln "spec" -at "spectrum" -nc 3;
	addAttr -ci true -sn "specR" -ln "specR" -at "float" -p "spec";
	addAttr -ci true -sn "specG" -ln "specG" -at "float" -p "spec";
	addAttr -ci true -sn "specB" -ln "specB" -at "float" -p "spec";
	addAttr -ci true -tomorrow 4 -sn "later" -ln "later" -at "double";
	setAttr -k on ".mode" 1;
	setAttr ".weight";
	setAttr ".map" -type "string" "maps/a.tif";
	setAttr ".off" -type "double3" 1 2 3 ;
	setAttr ".tint" -type "float3" 0.25 0.5 0.75 ;
	setAttr ".bind" -type "matrix" 1 0 0 0 0 1 0 0 0 0 1 0 4 5 6 1;
	setAttr ".spec" -type "float3" 1 1 0 ;
	setAttr -k on ".later" 7;
lockNode -l 0 -lu 1;
createNode transform -n "part" -p "rig";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000012";
	setAttr ".t" -type "double3" nan 2 -1.#IND ;
	setAttr ".s" -type "double3" 1 inf 1 ;
	setAttr ".future" -type "double3" nan inf 2 ;
lockNode -l 1 -lu 1;
createNode sculptor -n "sculptor1" -tomorrow 3;
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000013";
	setAttr ".depth" 2;
connectAttr "part.msg" "rig.parts" -na;
// End of attributes.ma
