import 'package:flutter/material.dart';

void main() => runApp(const MaterialApp(home: Text('Birdlog')));
