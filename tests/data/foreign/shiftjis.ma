//Maya ASCII 2018 scene
//Name: shiftjis.ma
//Last modified: Tue, Mar 05, 2019 04:01:22 PM
//Codeset: 932
// Licensed for classroom use only
requires maya "2018";
requires -nodeType "glossSurface" "lightworks" "4.0.2";
requires -nodeType "glossOptions" "lightworks" "4.0.2";
requires -dataType "glossWeights" "lightworks" "4.0.2";
currentUnit -l centimeter -a degree -t film;
fileInfo "application" "maya";
fileInfo "license" "student";
fileInfo "UUID" "4D5A2C0B-11E9-44C7-A3A4-000000000051";
createNode transform -n "kage";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000051";
	addAttr -ci true -sn "memo" -ln "memo" -dt "string";
	setAttr ".memo" -type "string" "âîïMÇ≈ï`Ç¢ÇΩï\ÅBÉ\";
createNode animCurveTL -n "kage_translateX";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000052";
	setAttr ".tan" 18;
	setAttr ".wgt" no;
	setAttr ".ktv[0]"  12 4.5;
createNode animLayerScript -n "hub";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000053";
createNode script -n "sceneConfigurationScriptNode";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000054";
	setAttr ".b" -type "string" "playbackOptions -min 1 -max 24 -ast 1 -aet 48 ";
	setAttr ".st" 6;
select -ne :hardwareRenderGlobals;
	setAttr ".ctrs" 256;
	lockNode -l 0 -lu 1;
connectAttr "kage_translateX.o" "kage.tx";
connectAttr "sceneConfigurationScriptNode.msg" "hub.scripts" -na;
// End of shiftjis.ma
