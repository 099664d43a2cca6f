//Maya ASCII 2018 scene
//Name: inches.ma
//Last modified: Tue, Mar 05, 2019 04:01:22 PM
//Codeset: UTF-8
requires maya "2018";
currentUnit -l inch -a radian -t film;
createNode transform -n "desk";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000021";
	setAttr ".t" -type "double3" 1.1 28.5 -0.3 ;
	setAttr ".r" -type "double3" 0 0.3 0 ;
	setAttr ".future" 12.5;
createNode mesh -n "deskShape" -p "desk";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000022";
	setAttr -k off ".v";
	setAttr -s 3 ".vt[0:2]"  0.1 0 0 0.7 0 0 0.7 0 1.3;
	setAttr -s 3 ".ed[0:2]"  0 1 0 1 2 0 2 0 0;
	setAttr ".fc[0]" -type "polyFaces" 
		f 3 0 1 2;
createNode animCurveTL -n "desk_translateX";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000023";
	setAttr ".tan" 18;
	setAttr ".wgt" no;
	setAttr ".ktv[0]"  1 1.1;
createNode springMount -n "mount";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000024";
	setAttr ".length" 3.25;
connectAttr "desk_translateX.o" "desk.tx";
// End of inches.ma
