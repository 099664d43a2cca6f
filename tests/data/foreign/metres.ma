//Maya ASCII 2016 scene
//Name: metres.ma
//Codeset: UTF-8
requires maya "2016";
requires "motionTools" "1.2";
currentUnit -l meter -a radian -t pal;
fileInfo "application" "maya";
createNode transform -n "walker";
	setAttr ".ro" 3;
	setAttr ".t" -type "double3" 1 2 -0.5 ;
	setAttr ".r" -type "double3" 0 1.5707963267948966 0 ;
	setAttr ".rpt" -type "double3" 0 0.01 0 ;
createNode transform -n "rig:hips" -p "walker";
	setAttr ".t" -type "double3" 0 0.9 0 ;
createNode transform -n "rig:outer:toe" -p "rig:hips";
	setAttr ".t" -type "double3" 0.1 -0.9 0.2 ;
	setAttr ".it" no;
createNode mesh -n "rig:toeShape" -p "rig:outer:toe";
	setAttr -k off ".v";
	setAttr -s 3 ".vt[0:2]"  0 0 0 0.1 0 0 0 0.1 0;
	setAttr -s 3 ".ed[0:2]"  0 1 0 1 2 0 2 0 0;
	setAttr -ch 3 ".fc[0]" -type "polyFaces" 
		f 3 0 1 2;
createNode animCurveTL -n "walker_translateX";
	setAttr ".tan" 18;
	setAttr ".wgt" no;
	setAttr -s 4 ".ktv[0:3]"  1 0 13 0.5 25 1 37 1.5;
	setAttr ".pre" 1;
	setAttr ".pst" 4;
createNode animCurveTL -n "walker_translateY";
	setAttr ".tan" 1;
	setAttr ".wgt" yes;
	setAttr -s 3 ".ktv[0:2]"  1 2 11.5 2.25 25 2;
	setAttr -s 3 ".kit[0:2]"  1 1 1;
	setAttr -s 3 ".kot[0:2]"  1 1 1;
	setAttr -s 3 ".ktl[0:2]" no no yes;
	setAttr -s 3 ".kwl[0:2]" no yes no;
	setAttr -s 3 ".kix[0:2]"  0.16 0.20000000298023224 0.25;
	setAttr -s 3 ".kiy[0:2]"  0 0.05 -0.125;
	setAttr -s 3 ".kox[0:2]"  0.16 0.3 0.25;
	setAttr -s 3 ".koy[0:2]"  0.1 0 0;
createNode animCurveTA -n "walker_rotateY";
	setAttr ".tan" 2;
	setAttr -s 9 ".ktv[0:8]"  1 0 4 0.1 7 0.2 10 0.1 13 0.3 16 0.5 19 0.4 22 0.2 25 3.1415926535897931;
	setAttr -s 9 ".kit[0:8]"  1 2 2 9 10 18 2 3 18;
	setAttr -s 9 ".kot[0:8]"  5 2 3 9 10 18 17 5 18;
	setAttr ".pst" 3;
createNode animCurveTU -n "walker_visibility";
	setAttr ".tan" 9;
	setAttr -s 2 ".ktv[0:1]"  1 1 20 0;
	setAttr -s 2 ".kot[0:1]"  5 5;
createNode animCurveUL -n "hips_translateY_drive";
	setAttr ".tan" 18;
	setAttr -s 2 ".ktv[0:1]"  0 0 1 0.25;
createNode animCurveUA -n "walker_rotateX_drive";
	setAttr -s 2 ".ktv[0:1]"  0 0 1 0.5;
createNode motionBlend -n "blend1";
	setAttr -s 2 ".in[0:1]"  0.25 0.75;
	setAttr ".curve" -type "nurbsCurve" 
		1 1 0 no 3
		2 0 1
		2
		0 0 0
		1 0 0;
createNode animLayer -s -n "BaseAnimation";
	setAttr ".ovrd" yes;
createNode script -n "sceneConfigurationScriptNode";
	setAttr ".b" -type "string" "playbackOptions -min 1 -max 48 -ast 1 -aet 100";
	setAttr ".st" 6;
select -ne :time1;
	setAttr ".o" 13;
select -ne :hyperGraphLayout;
	setAttr ".zm" 1;
connectAttr "walker_translateX.o" "walker.tx";
connectAttr "walker_translateY.o" "walker.ty";
connectAttr "walker_rotateY.o" "walker.ry";
connectAttr "walker_visibility.o" "walker.v";
connectAttr "blend1.o" "walker.tz";
connectAttr "walker.rx" "blend1.in[2]" -l on;
connectAttr "rig:toeShape.iog" ":initialShadingGroup.dsm" -na;
// End of metres.ma
