//Maya ASCII 2018 scene
//Name: primitives.ma
//Last modified: Tue, Mar 05, 2019 04:01:22 PM
//Codeset: UTF-8
requires maya "2018";
currentUnit -l centimeter -a degree -t film;
createNode transform -n "pillar";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000041";
	setAttr ".s" -type "double3" 1 1 1 ;
createNode mesh -n "pillarShape" -p "pillar";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000042";
	setAttr -k off ".v";
	setAttr ".vir" yes;
	setAttr ".vif" yes;
	setAttr ".lev" 2;
createNode polyCylinder -n "polyCylinder1";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000043";
	setAttr ".r" 1;
	setAttr ".sc" 1;
	setAttr ".cuv" 3;
createNode polyPlane -n "polyPlane1";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000044";
	setAttr ".cuv" 2;
createNode polyCube -n "polyCube1";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000045";
	setAttr ".cuv" 4;
connectAttr "polyCylinder1.out" "pillarShape.i";
// End of primitives.ma
